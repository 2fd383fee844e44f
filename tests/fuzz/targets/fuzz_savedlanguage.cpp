// The saved language file language/language: chosen as it stands, set, and saved back.
#include "fuzzsupport.h"

#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CLanguageStore>

#include <QtCore/QDir>
#include <QtCore/QStringList>

using namespace ZVUIFramework;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, true);
    CCommonModule::GetInstance();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input = ZVFuzz::Bytes(data, size);
    ZVFuzz::WriteProductFile(QStringLiteral("language/language"), input);

    CCommonModule* module = CCommonModule::GetInstance();
    const QStringList offered{QStringLiteral("English"), QStringLiteral("German")};
    const QString name = module->ChooseLanguage(offered);
    // A saved name is used as it is, offered or not; with none, and an empty
    // catalogue, the choice is English.
    const QString saved = QString::fromUtf8(input);
    ZVFUZZ_CHECK(name == (saved.isEmpty() ? QStringLiteral("English") : saved));

    module->SetLanguage(name);
    ZVFUZZ_CHECK(module->GetCurrentLanguage() == name);
    ZVFUZZ_CHECK(ZVFuzz::ReadProductFile(QStringLiteral("language/language")) == name.toUtf8());
    // No catalogue record names it, so the link file is the English one, whatever the
    // name holds (separators, "..", NUL).
    ZVFUZZ_CHECK(QDir::fromNativeSeparators(module->GetCurrentLinkFilePath())
                 == ZVFuzz::ProductFolder() + QStringLiteral("language/main/English_URL.xml"));
    return 0;
}
