// The application style sheet, assembled from the skin's qss files.
//
// The input is one style sheet, or two separated by a form feed: the host's Host.qss,
// added without rewriting, and the frame's ZVUIFramework.qss, rewritten.
#include "fuzzsupport.h"

#include <ZVCore/private/CStyleSheetManager>

#include <QtCore/QBuffer>
#include <QtCore/QMap>
#include <QtCore/QTextStream>

using namespace ZVUIFramework;

namespace {

// A file's text as the skin reads it: a text stream over a text-mode device.
QString decoded(const QByteArray& bytes)
{
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream stream(&buffer);
    return stream.readAll();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, false);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input = ZVFuzz::Bytes(data, size);
    const int split = input.indexOf('\f');
    const QByteArray host = split >= 0 ? input.left(split) : QByteArray();
    const QByteArray frame = split >= 0 ? input.mid(split + 1) : input;

    const QString qssDir = ZVFuzz::ProductFolder() + QStringLiteral("skin/qss/");
    ZVFuzz::WriteProductFile(QStringLiteral("skin/qss/ZVUIFramework.qss"), frame);
    if (split >= 0)
        ZVFuzz::WriteProductFile(QStringLiteral("skin/qss/Host.qss"), host);
    else
        ZVFuzz::RemoveProductFile(QStringLiteral("skin/qss/Host.qss"));

    const QString imageDir = QStringLiteral("skin/PictureNormal/");
    QMap<QString, bool> files;
    files.insert(QStringLiteral("ZVUIFramework.qss"), true);
    files.insert(QStringLiteral("Host.qss"), false);
    files.insert(QStringLiteral("Missing.qss"), true);
    const QString sheet = CStyleSheetManager::Assemble(files, qssDir, imageDir);

    // In the order of the names, Host.qss as it is, the frame's sheet with its resource
    // references pointing into the picture folder, and the separator rule when no sheet
    // styles the separator.
    QString expected = split >= 0 ? decoded(host) : QString();
    expected += decoded(frame).replace(QLatin1String("url(:/"), QLatin1String("url(") + imageDir);
    if (!expected.contains(QLatin1String("separator_line")))
        expected += CStyleSheetManager::SeparatorRule();
    ZVFUZZ_CHECK(sheet == expected);
    return 0;
}
