#ifndef ZVCORE_CLANGUAGESTORE_H
#define ZVCORE_CLANGUAGESTORE_H

#include <ZVCore/zvcore_export.h>
#include <ZVCore/private/MCLanguageInfo>

#include <QtCore/QString>

#include <vector>

namespace ZVUIFramework {

// The process-wide store of the language catalogue and of the executable's folder,
// from which every product file is found. Created on first use, on the GUI thread.
class ZVCORE_AUTOTEST_EXPORT CLanguageStore
{
public:
    static CLanguageStore* GetInstance();

    // The executable's folder in native separators, with a trailing separator.
    QString GetAppDir() const;
    // <app dir>language<sep>main: catalogue and link files.
    QString GetLanguageMainPath() const;
    // <app dir>language<sep>qm: translations, the "%1" of their file names.
    QString GetLanguageQmPath() const;
    // <app dir>language<sep>language: the saved language choice.
    QString GetSavedLanguagePath() const;
    // <app dir>productInfo.xml.
    QString GetProductInfoPath() const;
    // <app dir>language<sep>main<sep>localconfig.json.
    QString GetLocalConfigPath() const;

    // The catalogue in file order.
    const std::vector<MCLanguageInfo>& GetLanguageList() const;
    void SetLanguageList(const std::vector<MCLanguageInfo>& list);

    // Reads localconfig.json into the catalogue: a missing file keeps the catalogue as
    // it is; any other file replaces it, a malformed one with an empty list.
    void LoadLocalConfig();

private:
    CLanguageStore();
    ~CLanguageStore();
    CLanguageStore(const CLanguageStore&) = delete;
    CLanguageStore& operator=(const CLanguageStore&) = delete;

    QString m_appDir;
    std::vector<MCLanguageInfo> m_languages;
};

} // namespace ZVUIFramework

#endif // ZVCORE_CLANGUAGESTORE_H
