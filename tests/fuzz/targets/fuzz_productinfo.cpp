// productInfo.xml, as the first GetInstance() reads it from the executable's folder.
#include "fuzzsupport.h"
#include "zvapplicationinfo_p.h"

#include <ZVCore/private/CLanguageStore>

using namespace ZVUIFramework;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, true);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ZVFuzz::WriteProductFile(QStringLiteral("productInfo.xml"), ZVFuzz::Bytes(data, size));

    ZVApplicationInfoPrivate context;
    context.readProductInfo(CLanguageStore::GetInstance()->GetProductInfoPath());

    // The file names the product; the host's own settings stay as they were.
    ZVFUZZ_CHECK(context.sendEmailAccount.isEmpty());
    ZVFUZZ_CHECK(context.sendEmailPwd.isEmpty());
    ZVFUZZ_CHECK(context.userEmailInfo.isEmpty());
    ZVFUZZ_CHECK(context.updaterArguments.isEmpty());
    ZVFUZZ_CHECK(context.qssFiles.isEmpty());
    ZVFUZZ_CHECK(!context.crashCallback);
    return 0;
}
