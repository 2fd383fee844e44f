// The channel markers "custom" and "domain" beside the executable: the channel value
// and the two diagnostic readers.
#include "fuzzsupport.h"

#include <ZVCore/private/CCommonModule>

using namespace ZVUIFramework;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, false);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input = ZVFuzz::Bytes(data, size);
    const QString text = QString::fromUtf8(input);
    QString value = text;
    value.remove(QLatin1Char('\r'));
    value.remove(QLatin1Char('\n'));

    // Only "custom": it is the channel, line breaks removed.
    ZVFuzz::RemoveProductFile(QStringLiteral("domain"));
    ZVFuzz::WriteProductFile(QStringLiteral("custom"), input);
    ZVFUZZ_CHECK(CCommonModule::HasCustomMarker());
    ZVFUZZ_CHECK(CCommonModule::GetChannelValue() == value);
    ZVFUZZ_CHECK(CCommonModule::ReadCustomMarker() == text);

    // Only "domain": the same.
    ZVFuzz::RemoveProductFile(QStringLiteral("custom"));
    ZVFuzz::WriteProductFile(QStringLiteral("domain"), input);
    ZVFUZZ_CHECK(!CCommonModule::HasCustomMarker());
    ZVFUZZ_CHECK(CCommonModule::GetChannelValue() == value);
    ZVFUZZ_CHECK(CCommonModule::ReadDomainMarker() == text);
    ZVFUZZ_CHECK(CCommonModule::ReadCustomMarker().isEmpty());
    return 0;
}
