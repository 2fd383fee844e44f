#ifndef ZVFOUNDATION_CDATACOLLECTIONGA4_H
#define ZVFOUNDATION_CDATACOLLECTIONGA4_H

#include <ZVFoundation/zvfoundation_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

/*!
 * Records usage events in a local spool file, from which a separate uploader sends
 * them on. Recording needs no network and no event loop.
 *
 * The spool is "analytics-spool.jsonl" in the application's data folder
 * (QStandardPaths::AppDataLocation). Every event is one line holding one JSON object:
 *
 * \code
 * {"time":"2026-11-21T10:20:30.123Z","event":["startup","1.2.0"]}
 * \endcode
 *
 * The time is UTC with milliseconds; the strings keep their order. Writers take turns
 * through a lock on the spool file, so events sent at the same time from several
 * threads or processes never interleave, and each line is flushed to disk before
 * Send() returns. A line counts once its line end is written: a process killed in the
 * middle of Send() leaves at most the start of one line, without a line end, at the
 * end of the file; readers skip it, and the next Send() cuts it off.
 *
 * Send() takes no lock of the process and does not use the event loop, the network or
 * the C library's time conversion, so a crash handler may call it. (The file lock is
 * held only while a line is written, and the system drops it when its holder dies.) The first call of
 * GetInstance() determines and creates the folder and is not safe in that way: make
 * it early, for example in main() once the application name is set.
 *
 * \code
 * int main(int argc, char* argv[])
 * {
 *     QApplication app(argc, argv);
 *     QCoreApplication::setApplicationName(QStringLiteral("Viewer"));
 *     CDataCollectionGA4* analytics = CDataCollectionGA4::GetInstance();
 *     analytics->Send({QStringLiteral("startup"), QCoreApplication::applicationVersion()});
 *     ...
 * }
 * \endcode
 *
 * Failures, for instance a folder that cannot be written, are silent: the event is
 * lost and the program goes on.
 */
class ZVFOUNDATION_EXPORT CDataCollectionGA4
{
public:
    /// The only instance, created by the first call.
    static CDataCollectionGA4* GetInstance();

    /// Absolute path of the spool file, or an empty string when the system names no
    /// data folder.
    QString SpoolPath() const;

    /// Appends the event made of \a strings to the spool file.
    void Send(const QStringList& strings);

private:
    CDataCollectionGA4();
    ~CDataCollectionGA4();
    Q_DISABLE_COPY(CDataCollectionGA4)

    QString m_spoolPath;
    // m_spoolPath in the form the system's file functions take, encoded once so that
    // Send() does no conversion.
    QByteArray m_nativeSpoolPath;
};

#endif // ZVFOUNDATION_CDATACOLLECTIONGA4_H
