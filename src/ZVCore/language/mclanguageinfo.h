#ifndef ZVCORE_MCLANGUAGEINFO_H
#define ZVCORE_MCLANGUAGEINFO_H

#include <string>

namespace ZVUIFramework {

// One language of the catalogue ("LanguageInfoArray" of localconfig.json), in UTF-8 as
// the file holds it. Every field is empty when its key is missing or not a JSON string.
struct MCLanguageInfo
{
    std::string name;           // "Name": the key of everything else; "English" is the fallback
    std::string show;           // "Show": text shown in the language dialog
    std::string urlFileName;    // "UrlFileName": the language's link file
    std::string localeLanguage; // "LocaleLanguage": QLocale::languageToString() form
    std::string localeName;     // "LocaleName": comma-separated fragments of QLocale names
    std::string appleLanguage;  // "AppleLanguage": kept for other platforms, unused here

    bool operator==(const MCLanguageInfo& o) const
    {
        return name == o.name && show == o.show && urlFileName == o.urlFileName
            && localeLanguage == o.localeLanguage && localeName == o.localeName
            && appleLanguage == o.appleLanguage;
    }
    bool operator!=(const MCLanguageInfo& o) const { return !(*this == o); }
};

} // namespace ZVUIFramework

#endif // ZVCORE_MCLANGUAGEINFO_H
