#include "clanguagestore.h"
#include "executabledirectory_p.h"

#include <ZVCore/private/LocalConfig>

#include <QtCore/QDir>

namespace ZVUIFramework {

namespace {
QString joined(const QString& dir, std::initializer_list<const char*> parts)
{
    QString path = dir;
    bool first = true;
    for (const char* part : parts) {
        if (!first)
            path += QDir::separator();
        path += QLatin1String(part);
        first = false;
    }
    return path;
}
} // namespace

CLanguageStore* CLanguageStore::GetInstance()
{
    // Created on first use and kept for the life of the process: its paths are needed
    // until the very end, by the crash handler among others.
    static CLanguageStore* store = new CLanguageStore;
    return store;
}

CLanguageStore::CLanguageStore()
    : m_appDir(Platform::ExecutableDirectory())
{
}

CLanguageStore::~CLanguageStore() = default;

QString CLanguageStore::GetAppDir() const
{
    return m_appDir;
}

QString CLanguageStore::GetLanguageMainPath() const
{
    return joined(m_appDir, {"language", "main"});
}

QString CLanguageStore::GetLanguageQmPath() const
{
    return joined(m_appDir, {"language", "qm"});
}

QString CLanguageStore::GetSavedLanguagePath() const
{
    return joined(m_appDir, {"language", "language"});
}

QString CLanguageStore::GetProductInfoPath() const
{
    return m_appDir + QLatin1String("productInfo.xml");
}

QString CLanguageStore::GetLocalConfigPath() const
{
    return joined(m_appDir, {"language", "main", "localconfig.json"});
}

const std::vector<MCLanguageInfo>& CLanguageStore::GetLanguageList() const
{
    return m_languages;
}

void CLanguageStore::SetLanguageList(const std::vector<MCLanguageInfo>& list)
{
    m_languages = list;
}

void CLanguageStore::LoadLocalConfig()
{
    LoadLocalConfigFile(GetLocalConfigPath(), m_languages);
}

} // namespace ZVUIFramework
