#ifndef ZVFOUNDATION_CZV_BASE_FILE_H
#define ZVFOUNDATION_CZV_BASE_FILE_H

#include <ZVFoundation/zvfoundation_export.h>

#include <QtCore/QString>

/*!
 * File helpers shared by the framework and the products built on it.
 *
 * \code
 * // "About" box: the version of the program itself.
 * const QString version =
 *     CZV_Base_File::GetFileVersion(QCoreApplication::applicationFilePath());
 * label->setText(version.isEmpty() ? tr("unknown") : version);
 * \endcode
 */
class ZVFOUNDATION_EXPORT CZV_Base_File
{
public:
    /// The version of the file at \a path, or an empty string when it has none.
    ///
    /// On Windows this is the file version of the version resource, as "a.b.c.d".
    /// Other systems keep no version in executables, so there only the running
    /// executable has one: QCoreApplication::applicationVersion(), when an application
    /// object exists. A symbolic link or a relative path to the executable counts as
    /// the executable.
    static QString GetFileVersion(const QString& path);
};

#endif // ZVFOUNDATION_CZV_BASE_FILE_H
