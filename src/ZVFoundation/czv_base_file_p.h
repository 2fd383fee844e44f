#ifndef ZVFOUNDATION_CZV_BASE_FILE_P_H
#define ZVFOUNDATION_CZV_BASE_FILE_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVFoundation API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <QtCore/QString>

namespace ZVFoundationPrivate {

// The version the operating system records for the file at path, or an empty string.
// path is never empty. One definition per platform: czv_base_file_win.cpp,
// czv_base_file_generic.cpp.
QString platformFileVersion(const QString& path);

} // namespace ZVFoundationPrivate

#endif // ZVFOUNDATION_CZV_BASE_FILE_P_H
