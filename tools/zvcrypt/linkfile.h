#ifndef ZVCRYPT_LINKFILE_H
#define ZVCRYPT_LINKFILE_H

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

class CSimpleCrypt;

// The transformations behind zvcrypt, free of any file or console access so that the
// tests can drive them directly.
namespace ZVCrypt {

enum class Direction { Encipher, Decipher };

/// Reads a 64-bit key written in decimal or as 0x followed by 1 to 16 hex digits.
/// Signs, blanks and anything beyond 64 bits are rejected rather than wrapped, since a
/// silently different key would encipher files the library can no longer read.
bool parseKey(const QString& text, quint64* key);

/// Decodes \a bytes as UTF-8, skipping a leading byte-order mark. False when the bytes
/// are not valid UTF-8.
bool decodeUtf8(const QByteArray& bytes, QString* text);

/// The lines of \a text: split at line feeds, a trailing carriage return dropped from
/// each, and a final line feed ending the last line rather than starting an empty one.
QStringList splitLines(const QString& text);

struct TextResult
{
    QStringList values;     ///< One per input, in order; complete only when ok().
    int failedIndex = -1;   ///< 0-based position of the value that failed.
    QString reason;         ///< Why it failed, to follow the position in a message.

    bool ok() const { return failedIndex < 0; }
};

/// Enciphers or deciphers each of \a inputs. An empty value stays empty both ways, so
/// blank lines survive a round trip. Deciphering fails at the first value that does not
/// decode, or that decodes to text with a line break, which could not be printed as the
/// single line its input was.
TextResult transformTexts(const QStringList& inputs, const CSimpleCrypt& crypt, Direction direction);

struct LinkFileResult
{
    bool ok = false;
    QByteArray document;    ///< UTF-8; only when ok.
    QString error;          ///< Why the document was refused; only when !ok.
};

/// Rewrites a link file with the text of every element named "url" enciphered or
/// deciphered and everything else carried over unchanged. Text of a url is trimmed
/// before enciphering; a url holding only whitespace is left as it is. Refused: input
/// that is not well-formed XML, any document type declaration, a url holding anything
/// but text, and when enciphering a url that already decodes with the key, when
/// deciphering one that does not.
LinkFileResult transformLinkFile(const QByteArray& document, const CSimpleCrypt& crypt,
                                 Direction direction);

} // namespace ZVCrypt

#endif // ZVCRYPT_LINKFILE_H
