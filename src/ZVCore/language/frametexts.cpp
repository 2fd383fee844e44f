// The texts the frame's own widgets show (the dialog title bar of ZVControl among them,
// whose texts the frame's catalogue carries), each in the translation context of the class
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
    {"ZVDialogTitleBar", QT_TRANSLATE_NOOP("ZVDialogTitleBar", "Close")},
    {"ZVDialogTitleBar", QT_TRANSLATE_NOOP("ZVDialogTitleBar", "Closes the window")},
    {"ZVDialogTitleBar", QT_TRANSLATE_NOOP("ZVDialogTitleBar", "Minimise")},
    {"ZVDialogTitleBar", QT_TRANSLATE_NOOP("ZVDialogTitleBar", "Minimises the window")},
    {"ZVDialogTitleBar", QT_TRANSLATE_NOOP("ZVDialogTitleBar", "Maximise")},
    {"ZVDialogTitleBar", QT_TRANSLATE_NOOP("ZVDialogTitleBar", "Maximises the window")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Menu")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Minimise")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Maximise")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Restore")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Close")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Sends feedback to the makers")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Opens the menu")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Minimises the window")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Maximises the window")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Restores the window to its size")},
    {"ZVMainWindowTitle", QT_TRANSLATE_NOOP("ZVMainWindowTitle", "Closes the window")},
    {"ZVCoreWindow", QT_TRANSLATE_NOOP("ZVCoreWindow", "&Restore")},
    {"ZVCoreWindow", QT_TRANSLATE_NOOP("ZVCoreWindow", "&Move")},
    {"ZVCoreWindow", QT_TRANSLATE_NOOP("ZVCoreWindow", "&Size")},
    {"ZVCoreWindow", QT_TRANSLATE_NOOP("ZVCoreWindow", "Mi&nimise")},
    {"ZVCoreWindow", QT_TRANSLATE_NOOP("ZVCoreWindow", "Ma&ximise")},
    {"ZVCoreWindow", QT_TRANSLATE_NOOP("ZVCoreWindow", "&Close")},
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
