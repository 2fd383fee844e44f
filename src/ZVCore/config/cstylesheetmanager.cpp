#include "cstylesheetmanager.h"

#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/private/CLanguageStore>
#include <ZVFoundation/private/ZVQtCompat>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtCore/QVariant>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstring>


namespace ZVUIFramework {

QString CStyleSheetManager::SeparatorRule()
{
    return QStringLiteral("QLabel#separator_line{background-color: #e1e1e1;}");
}

namespace {

const char kImageReference[] = "url(:/";
const char kSeparatorName[] = "separator_line";

// The first \a needle in [from, end), or null. memchr looks for the needle's byte at
// \a anchor, chosen to be rarer in style sheets than its first one, and each hit is
// compared whole.
template <size_t N>
const char* findBytes(const char* from, const char* end, const char (&needle)[N], size_t anchor)
{
    const size_t length = N - 1;
    if (size_t(end - from) < length)
        return nullptr;
    for (const char* p = from + anchor; p < end;) {
        p = static_cast<const char*>(std::memchr(p, needle[anchor], size_t(end - p)));
        if (!p)
            return nullptr;
        const char* start = p - anchor;
        if (size_t(end - start) >= length && std::memcmp(start, needle, length) == 0)
            return start;
        ++p;
    }
    return nullptr;
}

// The assembly as described: each file read whole through a text stream (the locale's
// codec, or the one its byte-order mark names; every carriage return dropped), its
// image references replaced, the texts joined.
QString assembleThroughTextStreams(const QMap<QString, bool>& files, const QString& qssDir, const QString& replacement)
{
    QString sheet;
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const QString path = qssDir + it.key();
        // Only regular files: a FIFO or a device would block or never end.
        if (!QFileInfo(path).isFile())
            continue;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            continue;
        QTextStream stream(&file);
        QString text = stream.readAll();
        if (it.value())
            text.replace(QLatin1String(kImageReference), replacement);
        sheet += text;
        file.close();
    }
    if (!sheet.contains(QLatin1String(kSeparatorName)))
        sheet += CStyleSheetManager::SeparatorRule();
    return sheet;
}

} // namespace

QString CStyleSheetManager::Assemble(const QMap<QString, bool>& files, const QString& qssDir,
                                     const QString& imageDir)
{
    const QString replacement = QStringLiteral("url(%1").arg(imageDir);

    // The same result with far less work where the texts allow it. Searching and
    // rewriting a text character by character costs three times as much as reading it;
    // but in an ASCII-compatible encoding the references and the separator's name are
    // the same bytes before decoding as characters after it, and the C library finds
    // bytes fast. So the files are searched and rewritten as bytes, then decoded as a
    // text stream would. Any file a text stream would treat otherwise (one that starts
    // with what may be a byte-order mark, or holds a carriage return), a locale codec
    // that is not ASCII-compatible, or a picture folder that does not survive the
    // codec, and the whole sheet is assembled as described instead.
    const ZVQtCompat::StreamDecoder codec;
    const QByteArray encodedReplacement = codec.encode(replacement);
    if (!codec.asciiCompatible() || codec.decode(encodedReplacement) != replacement)
        return assembleThroughTextStreams(files, qssDir, replacement);

    // One file at a time, so that no more than one file's bytes, their rewritten copy
    // and their text are alive at once besides the sheet.
    QString sheet;
    bool separatorFound = false;
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const QString path = qssDir + it.key();
        // Only regular files: a FIFO or a device would block or never end.
        if (!QFileInfo(path).isFile())
            continue;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QByteArray bytes = file.readAll();
        file.close();
        const unsigned char first = bytes.isEmpty() ? 0x20 : static_cast<unsigned char>(bytes.front());
        if (first == 0x00 || first == 0xEF || first == 0xFE || first == 0xFF
            || std::memchr(bytes.constData(), '\r', size_t(bytes.size())))
            return assembleThroughTextStreams(files, qssDir, replacement);

        if (it.value()) {
            QByteArray rewritten;
            const char* from = bytes.constData();
            const char* const end = from + bytes.size();
            // Anchored on "(".
            while (const char* at = findBytes(from, end, kImageReference, 3)) {
                if (rewritten.isEmpty())
                    rewritten.reserve(bytes.size() + bytes.size() / 4 + 64);
                rewritten.append(from, int(at - from));
                rewritten.append(encodedReplacement);
                from = at + sizeof kImageReference - 1;
            }
            if (from != bytes.constData()) {
                rewritten.append(from, int(end - from));
                bytes = std::move(rewritten);
            }
        }
        // Inside one file the name is found among the bytes exactly where it is among
        // the characters; across the seam between two files, where the decoder may hold
        // back an unfinished sequence, it is looked for among the characters.
        if (!separatorFound) // anchored on "_"
            separatorFound = findBytes(bytes.constData(), bytes.constData() + bytes.size(), kSeparatorName, 9);
        const int seam = int(sheet.size());
        codec.appendDecoded(sheet, bytes);
        bytes = QByteArray();
        if (!separatorFound && seam > 0) {
            const int from = std::max(0, seam - int(sizeof kSeparatorName - 2));
            const int to = std::min(int(sheet.size()), seam + int(sizeof kSeparatorName - 2));
            separatorFound = QStringView(sheet).mid(from, to - from).indexOf(QLatin1String(kSeparatorName)) >= 0;
        }
    }
    if (!separatorFound)
        sheet += SeparatorRule();
    return sheet;
}

void CStyleSheetManager::Apply(const QMap<QString, bool>& files, const QString& imageDir)
{
    const QString qssDir = ZVApplicationInfo::GetInstance()->GetSkinObject().GetQssPath();
    const QString sheet = Assemble(files, qssDir, imageDir);
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance()))
        app->setStyleSheet(sheet);
}

bool CStyleSheetManager::RelativeImagePath()
{
    const QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return true;
    const QVariant value = app->property("QtRelativeImagePath");
    return value.isValid() ? value.toBool() : true;
}

QString CStyleSheetManager::QssSettingPath()
{
    static const QString path = CLanguageStore::GetInstance()->GetAppDir() + QLatin1String("skin")
        + QDir::separator() + QLatin1String("QssSetting.ini");
    return path;
}

QString CStyleSheetManager::QssDirPath()
{
    static const QString path = CLanguageStore::GetInstance()->GetAppDir() + QLatin1String("skin")
        + QDir::separator() + QLatin1String("qss");
    return path;
}

} // namespace ZVUIFramework
