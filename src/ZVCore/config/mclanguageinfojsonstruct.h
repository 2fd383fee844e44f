#ifndef ZVCORE_MCLANGUAGEINFOJSONSTRUCT_H
#define ZVCORE_MCLANGUAGEINFOJSONSTRUCT_H

#include <ZVCore/zvcore_export.h>
#include <ZVCore/private/IJSONStruct>
#include <ZVCore/private/MCLanguageInfo>

namespace ZVUIFramework {

/*!
 * Maps one element of "LanguageInfoArray" onto a language record. The keys, in the
 * order they are read and written, are "Name", "Show", "UrlFileName", "LocaleLanguage",
 * "LocaleName" and "AppleLanguage".
 *
 * \code
 * MCLanguageInfo record;
 * MCLanguageInfoJSONStruct json(&record, pool);
 * json.read(element);          // {"Name":"German","Show":"Deutsch","LocaleName":7}
 * // record.name == "German", record.show == "Deutsch", record.localeName unchanged
 *
 * json.setFilter(0, {"AppleLanguage"});
 * rapidjson::Value object = json.write();   // five members, "AppleLanguage" left out
 * \endcode
 *
 * The record is not owned. Without one (null), read() does nothing and write() writes
 * a record of empty strings.
 */
class ZVCORE_AUTOTEST_EXPORT MCLanguageInfoJSONStruct final : public IJSONStruct
{
public:
    MCLanguageInfoJSONStruct(MCLanguageInfo* record, JsonAllocatorHandle allocator);

    /// Copies each key that is present and a string into its field, byte for byte (a
    /// "\u0000" escape stays in the field). Anything but an object changes nothing.
    void read(const rapidjson::Value& value) override;
    /// An object with the six keys as strings, in their order, each unless filtered out.
    rapidjson::Value write() override;

    MCLanguageInfo* record() const;

private:
    MCLanguageInfo* m_record;
};

} // namespace ZVUIFramework

#endif // ZVCORE_MCLANGUAGEINFOJSONSTRUCT_H
