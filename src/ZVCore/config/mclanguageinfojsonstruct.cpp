#include "mclanguageinfojsonstruct.h"

#include <utility>

namespace ZVUIFramework {

namespace {

struct Field
{
    const char* key;
    std::string MCLanguageInfo::*member;
};

// File order, which is also the order of the members written.
constexpr Field Fields[] = {
    {"Name", &MCLanguageInfo::name},
    {"Show", &MCLanguageInfo::show},
    {"UrlFileName", &MCLanguageInfo::urlFileName},
    {"LocaleLanguage", &MCLanguageInfo::localeLanguage},
    {"LocaleName", &MCLanguageInfo::localeName},
    {"AppleLanguage", &MCLanguageInfo::appleLanguage},
};

} // namespace

MCLanguageInfoJSONStruct::MCLanguageInfoJSONStruct(MCLanguageInfo* record,
                                                   JsonAllocatorHandle allocator)
    : IJSONStruct(std::move(allocator))
    , m_record(record)
{
}

void MCLanguageInfoJSONStruct::read(const rapidjson::Value& value)
{
    // The type tests come first: on any other type the member functions below are
    // undefined, and the file is not trusted.
    if (!m_record || !value.IsObject())
        return;
    for (const Field& field : Fields) {
        const auto it = value.FindMember(field.key);
        if (it == value.MemberEnd() || !it->value.IsString())
            continue;
        // The length, not the terminator: a "\u0000" escape is part of the text.
        (m_record->*field.member).assign(it->value.GetString(), it->value.GetStringLength());
    }
}

rapidjson::Value MCLanguageInfoJSONStruct::write()
{
    JsonAllocator& pool = *allocator();
    static const MCLanguageInfo empty;
    const MCLanguageInfo& record = m_record ? *m_record : empty;

    rapidjson::Value object(rapidjson::kObjectType);
    for (const Field& field : Fields) {
        if (!keyAllowed(field.key))
            continue;
        const std::string& text = record.*field.member;
        // Keys are literals that outlive the pool; only the texts are copied into it.
        rapidjson::Value name(rapidjson::StringRef(field.key));
        rapidjson::Value string(text.data(), static_cast<rapidjson::SizeType>(text.size()), pool);
        object.AddMember(name, string, pool);
    }
    return object;
}

MCLanguageInfo* MCLanguageInfoJSONStruct::record() const
{
    return m_record;
}

} // namespace ZVUIFramework
