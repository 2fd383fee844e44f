#ifndef ZVCORE_ZVAPPLICATIONINFO_P_H
#define ZVCORE_ZVAPPLICATIONINFO_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/CSkin>

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ZVUIFramework {

class ZVApplicationInfoPrivate
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

    void readProductInfo(const QString& path);
};

} // namespace ZVUIFramework

#endif // ZVCORE_ZVAPPLICATIONINFO_P_H
