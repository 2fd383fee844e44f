// The texts the frame's own widgets show, each in the translation context of the class
// that shows it. They are listed here so that lupdate finds every one of them, also
// those a widget builds from parts, and so that every language file carries them all.
#include <QtCore/QtGlobal>

namespace ZVUIFramework {
namespace {

struct FrameText
{
    const char* context;
    const char* source;
};

[[maybe_unused]] const FrameText kFrameTexts[] = {
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Feedback")},
    {"LanguageSelectDialog", QT_TRANSLATE_NOOP("LanguageSelectDialog", "Please select a language")},
    {"LanguageSelectDialog", QT_TRANSLATE_NOOP("LanguageSelectDialog", "Cancel")},
    {"LanguageSelectDialog", QT_TRANSLATE_NOOP("LanguageSelectDialog", "OK")},
    {"LanguageSelectDialog", QT_TRANSLATE_NOOP("LanguageSelectDialog", "Notice:")},
    {"LanguageSelectDialog", QT_TRANSLATE_NOOP("LanguageSelectDialog", "The program will restart in order to apply the changes.")},
    {"ZVAboutDialog", QT_TRANSLATE_NOOP("ZVAboutDialog", "About Us")},
    {"ZVAboutDialog", QT_TRANSLATE_NOOP("ZVAboutDialog", "Version: ")},
    {"ZVAboutDialog", QT_TRANSLATE_NOOP("ZVAboutDialog", "Official Website")},
    {"ZVAboutDialog", QT_TRANSLATE_NOOP("ZVAboutDialog", "Contact Support")},
};

} // namespace
} // namespace ZVUIFramework
