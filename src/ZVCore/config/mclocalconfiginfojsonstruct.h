#ifndef ZVCORE_MCLOCALCONFIGINFOJSONSTRUCT_H
#define ZVCORE_MCLOCALCONFIGINFOJSONSTRUCT_H

#include <ZVCore/zvcore_export.h>
#include <ZVCore/private/IJSONStruct>
#include <ZVCore/private/MCLanguageInfo>

#include <vector>

namespace ZVUIFramework {

/*!
 * Maps the top-level object of localconfig.json, whose only member the framework knows
 * is the language catalogue "LanguageInfoArray", onto a list of language records.
 *
 * \code
 * std::vector<MCLanguageInfo> languages;
 * MCLocalConfigInfoJSONStruct json(&languages, pool);
 * json.read(doc);     // {"LanguageInfoArray":[{"Name":"English"},{"Name":"German"}]}
 * // languages.size() == 2, in file order
 *
 * rapidjson::Value object = json.write();   // {"LanguageInfoArray":[{...},{...}]}
 * \endcode
 *
 * The list is not owned; a null list reads nothing and writes as an empty one. Each
 * element is read and written by a MCLanguageInfoJSONStruct sharing this pool and with
 * the default filter, so the filter of this structure decides only whether
 * "LanguageInfoArray" is written at all.
 */
class ZVCORE_AUTOTEST_EXPORT MCLocalConfigInfoJSONStruct final : public IJSONStruct
{
public:
    MCLocalConfigInfoJSONStruct(std::vector<MCLanguageInfo>* records, JsonAllocatorHandle allocator);

    /// Appends one record per element of "LanguageInfoArray", in index order, to the
    /// records already in the list. An element that is not an object gives a record of
    /// empty strings. Without the member, or when it is not an array, nothing changes.
    void read(const rapidjson::Value& value) override;
    /// An object holding the list as "LanguageInfoArray", unless the filter rejects that
    /// key, in which case the object is empty.
    rapidjson::Value write() override;

    std::vector<MCLanguageInfo>* records() const;

private:
    std::vector<MCLanguageInfo>* m_records;
};

} // namespace ZVUIFramework

#endif // ZVCORE_MCLOCALCONFIGINFOJSONSTRUCT_H
