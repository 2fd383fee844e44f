// What the Windows lane's tests share: where the test programs are, a fresh folder per
// case, and a child process run to its end.
#ifndef ZVWIN_LANESUPPORT_H
#define ZVWIN_LANESUPPORT_H

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

namespace zvwin {

// The folder of the running program; the lane builds all its programs into one.
std::filesystem::path ProgramDirectory();

// <program folder>\runs\<name>, emptied: each case starts from nothing and leaves its
// files behind for a look after a failure.
std::filesystem::path FreshFolder(const std::wstring& name);

// Copies the lane's program \a file (a name in ProgramDirectory()) into \a folder under
// \a asName (the same name when empty). False when the copy fails.
bool CopyProgram(const std::wstring& file, const std::filesystem::path& folder, const std::wstring& asName = {});

struct ChildRun
{
    bool started = false;
    bool finished = false; // false: still running at the timeout, then terminated
    DWORD exitCode = 0;
};

// Starts \a program with \a arguments in \a folder and waits for its end.
ChildRun RunChild(const std::filesystem::path& program, const std::vector<std::wstring>& arguments,
                  const std::filesystem::path& folder, DWORD timeoutMs = 60000);

// The whole file as bytes; empty when it cannot be read.
std::string ReadFile(const std::filesystem::path& file);

// The lines of a file without their line ends.
std::vector<std::string> ReadLines(const std::filesystem::path& file);

// The exception code in the exception stream of a minidump's bytes; false when the
// bytes are no minidump or it has no exception stream.
bool DumpExceptionCode(const std::string& dump, DWORD* code);

} // namespace zvwin

#endif // ZVWIN_LANESUPPORT_H
