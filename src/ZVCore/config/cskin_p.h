#ifndef ZVCORE_CSKIN_P_H
#define ZVCORE_CSKIN_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <QtCore/QSharedData>
#include <QtCore/QString>

class CSkinData : public QSharedData
{
public:
    QString fontName;
    QString imagePath;
    QString qssPath;
    QString backupPath;
    QString tempFilePath;
    // No accessor reaches this one; it still travels with the others on copy and
    // assignment.
    QString reserved;
    QString currentLanguage;
};

#endif // ZVCORE_CSKIN_P_H
