// Child processes for the benchmarks that measure whole processes: started with
// posix_spawn, standard output on a pipe, standard error wherever asked.
#ifndef ZVBENCH_PROCESS_H
#define ZVBENCH_PROCESS_H

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <sys/types.h>

namespace ZVBench {

class Child
{
public:
    // Starts \a program with \a arguments in \a workingDirectory (empty: this one).
    // Standard error goes to \a errorFile (empty: /dev/null).
    bool start(const QString& program, const QStringList& arguments, const QString& errorFile = QString());
    ~Child();

    pid_t pid() const { return m_pid; }
    // The first line of standard output that starts with \a prefix, without it; empty
    // after \a timeoutMs or when the child closes its output first.
    QByteArray readLine(const QByteArray& prefix, int timeoutMs);
    // Waits for the end; returns the wait status, or -1.
    int wait();
    // Ends the child (SIGKILL) and waits for it.
    void kill();

private:
    pid_t m_pid = -1;
    int m_out = -1;
    QByteArray m_buffer;
};

// This program's folder, where its companion programs live.
QString programFolder();

// valgrind, or empty.
QString valgrindProgram();

// Where callgrind's dumps go in the counting pass of scripts/bench.sh; empty otherwise.
QString callgrindFolder();

} // namespace ZVBench

#endif // ZVBENCH_PROCESS_H
