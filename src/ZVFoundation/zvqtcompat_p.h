#ifndef ZVFOUNDATION_ZVQTCOMPAT_P_H
#define ZVFOUNDATION_ZVQTCOMPAT_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

// The few places where Qt 5 and Qt 6 differ in an API the libraries use, each behind one
// name with the same result on both. Everything else in the sources is the same code
// for both major versions; a difference of one line stays at its line, under
// #if QT_VERSION.

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QtGlobal>
#ifdef QT_GUI_LIB
#include <QtGui/QMouseEvent>
#endif

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QtCore/QStringConverter>
#else
#include <QtCore/QTextCodec>
#endif

namespace ZVQtCompat {

// The last argument of QWidget::nativeEvent: long* in Qt 5, qintptr* in Qt 6.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
using NativeEventResult = qintptr;
#else
using NativeEventResult = long;
#endif

// The type of a variant as a QMetaType id (QVariant::type() is gone from Qt 6's API).
inline int TypeId(const QVariant& value)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return value.typeId();
#else
    return value.userType();
#endif
}

// A font weight on Qt 5's scale (0 to 99: 50 normal, 75 bold) as the QFont of the running
// Qt takes it. Qt 6 weighs fonts on the OpenType scale (100 to 900: 400 normal, 700 bold)
// and would take 50 for a hairline; a Qt 5 weight maps to the nearest named weight, the
// lighter one on a tie, as Qt 6 itself maps the Qt 5 weights it reads from font strings.
inline int FontWeight(int qt5Weight)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    static const int named[][2] = {{0, 100}, {12, 200}, {25, 300}, {50, 400}, {57, 500},
                                   {63, 600}, {75, 700}, {81, 800}, {87, 900}};
    const int weight = qBound(0, qt5Weight, 99);
    int nearest = named[0][1];
    int distance = weight - named[0][0];
    for (const auto& pair : named) {
        const int d = qAbs(weight - pair[0]);
        if (d < distance) {
            distance = d;
            nearest = pair[1];
        }
    }
    return nearest;
#else
    return qt5Weight;
#endif
}

#ifdef QT_GUI_LIB
// The global position of a mouse event, in logical pixels (QMouseEvent::screenPos() in
// Qt 5, globalPosition() in Qt 6).
inline QPointF GlobalPosition(const QMouseEvent* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->globalPosition();
#else
    return event->screenPos();
#endif
}
#endif

// Sets one of Qt 5's high-DPI attributes (AA_EnableHighDpiScaling, AA_UseHighDpiPixmaps).
// Qt 6 scales and uses high-DPI pixmaps always and deprecates both; they are still set,
// so that testAttribute() answers on Qt 6 as on Qt 5.
inline void SetHighDpiAttribute(Qt::ApplicationAttribute attribute)
{
    QCoreApplication::setAttribute(attribute);
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
// The two attributes by name; naming them is what Qt 6 warns about.
constexpr Qt::ApplicationAttribute kEnableHighDpiScaling = Qt::AA_EnableHighDpiScaling;
constexpr Qt::ApplicationAttribute kUseHighDpiPixmaps = Qt::AA_UseHighDpiPixmaps;
QT_WARNING_POP

// A list of strings as Qt 5's debug stream writes it, ("a", "b"), for log lines whose
// text is fixed; Qt 6's stream writes QList("a", "b").
inline QString DebugText(const QStringList& list)
{
    QString text;
    QDebug stream(&text);
    stream.nospace() << '(';
    for (int i = 0; i < list.size(); ++i) {
        if (i > 0)
            stream << ", ";
        stream << list.at(i);
    }
    stream << ')';
    return text;
}

// A file's bytes as UTF-8 text up to the first NUL byte: what QString::fromUtf8 makes of
// a QByteArray in Qt 5, where Qt 6 keeps the NUL and everything after it.
inline QString Utf8UpToNul(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes.constData(), int(qstrnlen(bytes.constData(), uint(bytes.size()))));
}

// Strict UTF-8: \a text receives the characters (a U+FEFF at the start is kept as a
// character), and the result says whether every byte belonged to a complete, valid
// sequence.
inline bool DecodeUtf8(const char* data, int size, QString* text)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    // Stateless: an unfinished sequence at the end is an error, not held back.
    QStringDecoder decoder(QStringConverter::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    *text = decoder.decode(QByteArrayView(data, size));
    return !decoder.hasError();
#else
    QTextCodec* utf8 = QTextCodec::codecForMib(106);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    *text = utf8->toUnicode(data, size, &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
#endif
}

// What a QTextStream decodes a file with when the file has no byte order mark: the
// locale's codec in Qt 5, UTF-8 in Qt 6. Its bytes are ASCII where the text is ASCII
// when asciiCompatible() holds.
class StreamDecoder
{
public:
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    StreamDecoder() = default;
#else
    StreamDecoder() : m_codec(QTextCodec::codecForLocale()) {}
#endif

    bool asciiCompatible() const
    {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        return true;
#else
        // UTF-8 (106) or ISO 8859-1 (4).
        return m_codec && (m_codec->mibEnum() == 106 || m_codec->mibEnum() == 4);
#endif
    }

    QByteArray encode(const QString& text) const
    {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        return text.toUtf8();
#else
        return m_codec ? m_codec->fromUnicode(text) : QByteArray();
#endif
    }

    // Decodes one whole file's bytes; a sequence left unfinished at its end is dropped,
    // as the stream drops it at the end of a file.
    QString decode(const QByteArray& bytes) const
    {
        QString text;
        appendDecoded(text, bytes);
        return text;
    }

    // decode(bytes) appended to \a text. On Qt 6 the characters are decoded straight into
    // \a text's storage, without a string of their own to copy.
    void appendDecoded(QString& text, const QByteArray& bytes) const
    {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        const qsizetype at = text.size();
        // UTF-8 never gives more UTF-16 units than it has bytes.
        text.resize(at + bytes.size());
        QStringDecoder decoder(QStringConverter::Utf8);
        const QChar* end = decoder.appendToBuffer(text.data() + at, bytes);
        text.truncate(end - text.constData());
#else
        QTextCodec::ConverterState state;
        text += m_codec->toUnicode(bytes.constData(), bytes.size(), &state);
#endif
    }

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
private:
    QTextCodec* m_codec;
#endif
};

} // namespace ZVQtCompat

#endif // ZVFOUNDATION_ZVQTCOMPAT_P_H
