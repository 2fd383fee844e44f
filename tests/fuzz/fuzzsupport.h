// Shared by the fuzz targets: a private product folder, a quiet Qt, and checks that end
// the run when a property of the library does not hold.
#ifndef ZVCORE_TESTS_FUZZSUPPORT_H
#define ZVCORE_TESTS_FUZZSUPPORT_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <cstdint>

namespace ZVFuzz {

// The library reads its files from the folder of the running executable. So that every
// process owns the files it writes (several fuzzing processes may run from one build,
// and libFuzzer's -fork and -jobs start more), the first call copies the executable into
// a fresh temporary folder, runs the copy there with the same arguments, removes the
// folder when it ends and exits as it did. In the copy it returns at once. Call it first
// in LLVMFuzzerInitialize.
void RunFromPrivateFolder(int* argc, char*** argv);

// The executable's folder with a trailing "/": the product folder of this process.
QString ProductFolder();

// Writes \a bytes to \a relative in the product folder, creating folders as needed.
bool WriteProductFile(const QString& relative, const QByteArray& bytes);
void RemoveProductFile(const QString& relative);
QByteArray ReadProductFile(const QString& relative);

// The Qt application object the targets run under, on the offscreen platform, with
// Qt messages dropped: the library logs on paths the fuzzer takes millions of times.
void StartApplication(int* argc, char*** argv, bool widgets);

// Views of the input.
inline QByteArray Bytes(const std::uint8_t* data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), int(size));
}

// Ends the process with a message when \a condition is false, so that libFuzzer keeps
// the input as a finding. Used for properties the library promises, not for crashes.
#define ZVFUZZ_CHECK(condition)                                                                    \
    do {                                                                                           \
        if (!(condition))                                                                          \
            ::ZVFuzz::Fail(#condition, __FILE__, __LINE__);                                        \
    } while (false)

[[noreturn]] void Fail(const char* what, const char* file, int line);

} // namespace ZVFuzz

#endif // ZVCORE_TESTS_FUZZSUPPORT_H
