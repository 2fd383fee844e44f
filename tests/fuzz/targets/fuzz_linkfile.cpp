// The link file of the current language, as the link look-ups read it: by key, with
// the address deciphered.
#include "fuzzsupport.h"

#include <ZVCore/private/CCommonModule>
#include <ZVFoundation/CSimpleCrypt>

#include <QtCore/QDir>

using namespace ZVUIFramework;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, false);
    // Chooses English, whose link file is English_URL.xml: the catalogue is empty.
    CCommonModule::GetInstance();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CCommonModule* module = CCommonModule::GetInstance();
    ZVFUZZ_CHECK(QDir::fromNativeSeparators(module->GetCurrentLinkFilePath())
                 == ZVFuzz::ProductFolder() + QStringLiteral("language/main/English_URL.xml"));
    ZVFuzz::WriteProductFile(QStringLiteral("language/main/English_URL.xml"), ZVFuzz::Bytes(data, size));

    // The keys the frame looks up, one that matches every entry and one that none has.
    static const QString keys[] = {
        QString(),
        QStringLiteral("CheckNewVersion"),
        QStringLiteral("AboutHome"),
        QStringLiteral("AboutSupport"),
        QStringLiteral("Home"),
        QStringLiteral("\xc3\xa9\x01<&"),
    };
    for (const QString& key : keys) {
        int isShow = 1;
        QString url;
        module->LookupLink(key, isShow, url);
        // The other look-ups agree with the entry found.
        ZVFUZZ_CHECK(module->IsLinkShown(key) == (isShow != 0));
        const QString decoded = module->GetDecodedLink(key);
        ZVFUZZ_CHECK(decoded == (url.isEmpty() ? QString() : module->GetCipher()->decryptToString(url)));
    }
    return 0;
}
