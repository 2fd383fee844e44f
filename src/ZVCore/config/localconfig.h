#ifndef ZVCORE_LOCALCONFIG_H
#define ZVCORE_LOCALCONFIG_H

#include <ZVCore/zvcore_export.h>
#include <ZVCore/private/MCLanguageInfo>

#include <QtCore/QString>

#include <string>
#include <unordered_set>
#include <vector>

namespace ZVUIFramework {

/*!
 * Reads the language catalogue of the local configuration file at \a path into
 * \a catalogue.
 *
 * \code
 * std::vector<MCLanguageInfo> languages;
 * LoadLocalConfigFile(appDir + "language/main/localconfig.json", languages);
 * for (const MCLanguageInfo& language : languages)
 *     qDebug() << QString::fromStdString(language.name);
 * \endcode
 *
 * When nothing exists at \a path the catalogue is left as it is. Otherwise the file's
 * catalogue replaces it, in file order; a file that cannot be read or parsed (malformed,
 * empty, a directory or another kind of file that is not a regular one) replaces it with
 * an empty list. Only the bytes before the first NUL are parsed. Nothing is reported.
 */
ZVCORE_AUTOTEST_EXPORT void LoadLocalConfigFile(const QString& path,
                                                std::vector<MCLanguageInfo>& catalogue);

/*!
 * The local configuration file holding \a catalogue, as compact UTF-8 JSON. The filter
 * (see IJSONStruct::setFilter) applies to the top-level object, so it decides whether
 * "LanguageInfoArray" is written; the records are always written whole.
 *
 * \code
 * const std::string json = WriteLocalConfig(languages);
 * // {"LanguageInfoArray":[{"Name":"English","Show":"English",...}]}
 * QFile file(path);
 * if (file.open(QIODevice::WriteOnly))
 *     file.write(json.data(), qint64(json.size()));
 * \endcode
 *
 * The framework itself never saves the file; this is for product tools.
 */
ZVCORE_AUTOTEST_EXPORT std::string WriteLocalConfig(const std::vector<MCLanguageInfo>& catalogue,
                                                    int filterMode = 0,
                                                    std::unordered_set<std::string> filterKeys = {});

} // namespace ZVUIFramework

#endif // ZVCORE_LOCALCONFIG_H
