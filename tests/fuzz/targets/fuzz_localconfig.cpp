// localconfig.json, as the core window loads its catalogue, and the catalogue written
// back under every kind of key filter.
#include "fuzzsupport.h"

#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/IJSONStruct>
#include <ZVCore/private/LocalConfig>
#include <ZVCore/private/MCLanguageInfoJSONStruct>

#include <rapidjson/document.h>

#include <string>
#include <unordered_set>
#include <vector>

using namespace ZVUIFramework;

namespace {

const struct
{
    const char* key;
    std::string MCLanguageInfo::*field;
} kRecordFields[] = {
    {"Name", &MCLanguageInfo::name},
    {"Show", &MCLanguageInfo::show},
    {"UrlFileName", &MCLanguageInfo::urlFileName},
    {"LocaleLanguage", &MCLanguageInfo::localeLanguage},
    {"LocaleName", &MCLanguageInfo::localeName},
    {"AppleLanguage", &MCLanguageInfo::appleLanguage},
};

bool allowed(int mode, const std::unordered_set<std::string>& keys, const char* key)
{
    const bool listed = keys.count(key) != 0;
    return mode == IJSONStruct::FilterExclude ? !listed : (mode == IJSONStruct::FilterInclude ? listed : true);
}

// One record written under a filter: exactly the allowed members, strings holding the
// record's texts.
void checkRecordWrite(const MCLanguageInfo& record, int mode, const std::unordered_set<std::string>& keys)
{
    MCLanguageInfo copy = record;
    MCLanguageInfoJSONStruct json(&copy, MakeJsonAllocator());
    json.setFilter(mode, keys);
    const rapidjson::Value object = json.write();
    ZVFUZZ_CHECK(object.IsObject());

    MCLanguageInfo back;
    MCLanguageInfoJSONStruct reader(&back, MakeJsonAllocator());
    reader.read(object);
    rapidjson::SizeType expected = 0;
    for (const auto& field : kRecordFields) {
        const bool written = object.HasMember(field.key);
        ZVFUZZ_CHECK(written == allowed(mode, keys, field.key));
        if (written) {
            ++expected;
            ZVFUZZ_CHECK(object[field.key].IsString());
            ZVFUZZ_CHECK(back.*field.field == record.*field.field);
        } else {
            ZVFUZZ_CHECK((back.*field.field).empty());
        }
    }
    ZVFUZZ_CHECK(object.MemberCount() == expected);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, false);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString file = QStringLiteral("language/main/localconfig.json");
    ZVFuzz::WriteProductFile(file, ZVFuzz::Bytes(data, size));

    // The path and the loader the core window uses.
    CLanguageStore* store = CLanguageStore::GetInstance();
    store->SetLanguageList({});
    store->LoadLocalConfig();
    const std::vector<MCLanguageInfo> catalogue = store->GetLanguageList();

    const std::unordered_set<std::string> filters[] = {
        {},
        {"LanguageInfoArray"},
        {"LanguageInfoArray", "Name", "UrlFileName"},
        {"Show", "LocaleName", "unknown"},
    };
    for (int mode : {IJSONStruct::FilterExclude, IJSONStruct::FilterInclude, 2}) {
        for (const std::unordered_set<std::string>& keys : filters) {
            const std::string json = WriteLocalConfig(catalogue, mode, keys);
            if (!allowed(mode, keys, "LanguageInfoArray")) {
                ZVFUZZ_CHECK(json == "{}");
                continue;
            }
            // Written whole, the catalogue reads back as it was.
            ZVFUZZ_CHECK(ZVFuzz::WriteProductFile(QStringLiteral("written.json"),
                                                  QByteArray(json.data(), int(json.size()))));
            std::vector<MCLanguageInfo> back;
            LoadLocalConfigFile(ZVFuzz::ProductFolder() + QStringLiteral("written.json"), back);
            ZVFUZZ_CHECK(back == catalogue);
        }
    }
    if (!catalogue.empty()) {
        for (int mode : {IJSONStruct::FilterExclude, IJSONStruct::FilterInclude, -1}) {
            for (const std::unordered_set<std::string>& keys : filters)
                checkRecordWrite(catalogue.front(), mode, keys);
        }
    }
    return 0;
}
