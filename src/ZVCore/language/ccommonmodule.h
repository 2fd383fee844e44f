#ifndef ZVCORE_CCOMMONMODULE_H
#define ZVCORE_CCOMMONMODULE_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

class CSimpleCrypt;
class QTranslator;

namespace ZVUIFramework {

// The language manager. Its construction on first use chooses the language (forced,
// saved, from the system locale, else English), installs the frame's and the host's
// translators, saves the choice and tells the link-opening service. It also owns the
// per-language link file: the enciphered web addresses and the title-menu entries.
//
// The core window constructs it, after loading the catalogue, so that the automatic
// choice sees the catalogue.
class ZVCORE_AUTOTEST_EXPORT CCommonModule : public QObject
{
    Q_OBJECT

public:
    static CCommonModule* GetInstance();

    // --- language -------------------------------------------------------------------

    // The language to use among \a offered (catalogue names): "ForceLanguage", else the
    // saved choice, else the best catalogue match for the system locale, else "English".
    // Forced and saved names are used as they are, offered or not.
    QString ChooseLanguage(const QStringList& offered);

    // Link file, translators, saved file, LanguageChange, layout direction, and the
    // link-opening service, in that order.
    void SetLanguage(const QString& name);

    QString GetCurrentLanguage() const;

    // The cipher of the link file's addresses, keyed with ZVCORE_LINK_CIPHER_KEY.
    CSimpleCrypt* GetCipher() const;

    // --- link file ------------------------------------------------------------------

    // <language\main>\<UrlFileName of the language>, or English_URL.xml when the
    // catalogue has no such language or its file does not exist.
    QString GetLinkFilePath(const QString& language) const;
    // The link file of the language set last; the title menu is built from it.
    QString GetCurrentLinkFilePath() const;

    // The first entry whose "menuName" contains \a key: its "url" text (still
    // enciphered) and its "isShow" value. Outputs are left as they are when nothing
    // is found.
    void LookupLink(const QString& key, int& isShow, QString& url) const;
    // The deciphered address of \a key; empty when not found.
    QString GetDecodedLink(const QString& key) const;
    // Opens the address of \a key through QDesktopServices when it is shown (isShow
    // exactly 1) and not empty.
    void OpenLink(const QString& key) const;
    // Whether \a key is shown; a key that is not found counts as shown.
    bool IsLinkShown(const QString& key) const;

    // --- channel markers ("custom" and "domain" beside the executable) --------------

    static bool HasCustomMarker();
    // The content of the older of the two marker files, line breaks removed; empty when
    // neither exists or both were created in the same second.
    static QString GetChannelValue();
    // Diagnostics: each reads one marker and logs it.
    static QString ReadCustomMarker();
    static QString ReadDomainMarker();

private:
    CCommonModule();
    ~CCommonModule() override;

    void InitLanguage();
    void ReplaceTranslator(QTranslator*& slot, const QString& file);

    CSimpleCrypt* m_cipher = nullptr;
    QString m_linkFilePath;
    QString m_currentLanguage;
    QString m_reserved;
    QTranslator* m_frameworkTranslator = nullptr;
    QTranslator* m_hostTranslator = nullptr;
};

} // namespace ZVUIFramework

#endif // ZVCORE_CCOMMONMODULE_H
