#include "mclocalconfiginfojsonstruct.h"

#include <ZVCore/private/MCLanguageInfoJSONStruct>

#include <utility>

namespace ZVUIFramework {

namespace {
constexpr char LanguageInfoArray[] = "LanguageInfoArray";
} // namespace

MCLocalConfigInfoJSONStruct::MCLocalConfigInfoJSONStruct(std::vector<MCLanguageInfo>* records,
                                                         JsonAllocatorHandle allocator)
    : IJSONStruct(std::move(allocator))
    , m_records(records)
{
}

void MCLocalConfigInfoJSONStruct::read(const rapidjson::Value& value)
{
    if (!m_records || !value.IsObject())
        return;
    const auto it = value.FindMember(LanguageInfoArray);
    if (it == value.MemberEnd() || !it->value.IsArray())
        return;

    // Only the elements themselves are looked at, never what they contain beyond their
    // own members, so however deep a file nests, reading it costs no recursion.
    const rapidjson::Value& array = it->value;
    m_records->reserve(m_records->size() + array.Size());
    for (rapidjson::SizeType i = 0; i < array.Size(); ++i) {
        MCLanguageInfo record;
        MCLanguageInfoJSONStruct element(&record, allocator());
        element.read(array[i]);
        m_records->push_back(std::move(record));
    }
}

rapidjson::Value MCLocalConfigInfoJSONStruct::write()
{
    JsonAllocator& pool = *allocator();
    rapidjson::Value object(rapidjson::kObjectType);
    if (!keyAllowed(LanguageInfoArray))
        return object;

    rapidjson::Value array(rapidjson::kArrayType);
    if (m_records) {
        array.Reserve(static_cast<rapidjson::SizeType>(m_records->size()), pool);
        for (MCLanguageInfo& record : *m_records) {
            MCLanguageInfoJSONStruct element(&record, allocator());
            rapidjson::Value item = element.write();
            array.PushBack(item, pool);
        }
    }
    rapidjson::Value name(rapidjson::StringRef(LanguageInfoArray));
    object.AddMember(name, array, pool);
    return object;
}

std::vector<MCLanguageInfo>* MCLocalConfigInfoJSONStruct::records() const
{
    return m_records;
}

} // namespace ZVUIFramework
