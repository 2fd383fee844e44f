#ifndef ZVCORE_CSTYLESHEETMANAGER_H
#define ZVCORE_CSTYLESHEETMANAGER_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QMap>
#include <QtCore/QString>

namespace ZVUIFramework {

// Assembles the application style sheet from the skin's "qss/" files and sets it on the
// application object. The skin initialisation of the context is its only caller.
class ZVCORE_AUTOTEST_EXPORT CStyleSheetManager
{
public:
    // The rule added when no sheet styles the title bar's separator.
    static QString SeparatorRule();

    // The sheet made of \a files (name -> rewrite "url(:/" references), read from
    // \a qssDir (ending in "/") in key order, with \a imageDir substituted for ":/" in
    // the files whose flag is set, plus the separator rule when no file mentions
    // "separator_line". Files that cannot be read are skipped.
    static QString Assemble(const QMap<QString, bool>& files, const QString& qssDir,
                            const QString& imageDir);

    // Assembles from the qss path of the context's skin and sets the result on the
    // application, replacing any sheet set before.
    static void Apply(const QMap<QString, bool>& files, const QString& imageDir);

    // The application property "QtRelativeImagePath": true when absent.
    static bool RelativeImagePath();

    // <app dir>skin<sep>QssSetting.ini and <app dir>skin<sep>qss, computed once. The
    // frame itself neither reads nor writes them; they are offered to products.
    static QString QssSettingPath();
    static QString QssDirPath();
};

} // namespace ZVUIFramework

#endif // ZVCORE_CSTYLESHEETMANAGER_H
