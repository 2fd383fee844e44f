#ifndef ZVFOUNDATION_CSIMPLECRYPT_H
#define ZVFOUNDATION_CSIMPLECRYPT_H

#include <ZVFoundation/zvfoundation_export.h>

#include <QtCore/QString>
#include <QtCore/QtGlobal>

/*!
 * A symmetric cipher for short texts such as passwords or links kept in settings and
 * XML files, keyed by a 64-bit integer.
 *
 * The enciphered form is standard base64 with padding, plain ASCII that can stand in
 * XML text or an INI value without escaping. It carries a format version and an
 * integrity tag, so a wrong key, a text damaged in any way or any other input that was
 * not produced by this class deciphers to an empty string, never to wrong text.
 *
 * Enciphering is deterministic: the same key and the same text always give the same
 * output. This keeps files enciphered at build time reproducible, but it also means
 * that equal plain texts can be recognised as equal from their enciphered forms.
 * Every QString round-trips exactly, including strings with unpaired surrogates.
 *
 * The cipher hides texts from casual reading; its strength is bounded by the 64-bit
 * key, which usually ships inside the program that uses it.
 *
 * \code
 * CSimpleCrypt crypt(Q_UINT64_C(0x0c2ad4a4acb9f023));
 * const QString stored = crypt.encryptToString(QStringLiteral("secret"));
 * const QString plain = crypt.decryptToString(stored);   // "secret"
 * if (plain.isEmpty())
 *     qWarning("the stored value is damaged or was written with another key");
 * \endcode
 */
class ZVFOUNDATION_EXPORT CSimpleCrypt
{
public:
    /// A cipher with key 0.
    CSimpleCrypt();
    explicit CSimpleCrypt(quint64 key);

    void setKey(quint64 key);
    quint64 key() const;

    /// The enciphered form of \a plain, never empty.
    QString encryptToString(const QString& plain) const;

    /// The text that \a cipher was made from with this key, or an empty string when
    /// \a cipher is damaged, was made with another key or is not an enciphered text.
    /// Leading and trailing ASCII whitespace is ignored.
    QString decryptToString(const QString& cipher) const;

private:
    quint64 m_key = 0;
};

#endif // ZVFOUNDATION_CSIMPLECRYPT_H
