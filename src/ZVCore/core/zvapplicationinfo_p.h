#ifndef ZVCORE_ZVAPPLICATIONINFO_P_H
#define ZVCORE_ZVAPPLICATIONINFO_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/zvcore_export.h>
#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/private/LaunchArguments>

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

namespace ZVUIFramework {

// Exported by a developer build, so that the product file reader can be driven
// without the process-wide context.
class ZVCORE_AUTOTEST_EXPORT ZVApplicationInfoPrivate
{
public:
    QString brandName;
    QString appName;
    QString pid;
    QString appTitle;
    QString info;
    QString sendEmailAccount;
    QString sendEmailPwd;
    QString receiveEmailOnCrash;
    QString fbReceiveEmailAccount;
    QString userEmailInfo;
    CSkin skin;
    QStringList updaterArguments;
    // Style-sheet file name -> rewrite "url(:/" references. Key order is the order in
    // which the sheets are concatenated.
    QMap<QString, bool> qssFiles;
    std::function<long(EXCEPTION_POINTERS*)> crashCallback;

    void readProductInfo(const QString& path);
    FeedbackFields feedbackFields() const;
    // The crash handler cannot build the feedback command line when it runs; it gets
    // it ready now, whenever a field of it changes.
    void prepareCrashFeedback();
    // Step one of a crash report: the "AppCrashed" property and the analytics event.
    static void recordCrash();
    static QString feedbackProgram();
    static void logFeedbackStart(const QStringList& arguments);
};

} // namespace ZVUIFramework

#endif // ZVCORE_ZVAPPLICATIONINFO_P_H
