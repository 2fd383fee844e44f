#include "lanesupport.h"

#include "commandline.h"

#include <dbghelp.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace zvwin {

std::filesystem::path ProgramDirectory()
{
    std::wstring buffer(32768, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, &buffer[0], DWORD(buffer.size()));
    buffer.resize(length);
    return std::filesystem::path(buffer).parent_path();
}

std::filesystem::path FreshFolder(const std::wstring& name)
{
    const std::filesystem::path folder = ProgramDirectory() / L"runs" / name;
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    std::filesystem::create_directories(folder, error);
    return folder;
}

bool CopyProgram(const std::wstring& file, const std::filesystem::path& folder, const std::wstring& asName)
{
    std::error_code error;
    return std::filesystem::copy_file(ProgramDirectory() / file, folder / (asName.empty() ? file : asName),
                                      std::filesystem::copy_options::overwrite_existing, error);
}

ChildRun RunChild(const std::filesystem::path& program, const std::vector<std::wstring>& arguments,
                  const std::filesystem::path& folder, DWORD timeoutMs)
{
    ChildRun run;
    std::wstring line = BuildCommandLine(program.wstring(), arguments);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(program.wstring().c_str(), &line[0], nullptr, nullptr, FALSE, 0, nullptr,
                          folder.wstring().c_str(), &startup, &process)) {
        std::printf("could not start %ls: error %lu\n", program.wstring().c_str(), ::GetLastError());
        return run;
    }
    run.started = true;
    run.finished = ::WaitForSingleObject(process.hProcess, timeoutMs) == WAIT_OBJECT_0;
    if (!run.finished) {
        std::printf("%ls still runs after %lu ms; terminating it\n", program.wstring().c_str(), timeoutMs);
        ::TerminateProcess(process.hProcess, 0xDEAD);
        ::WaitForSingleObject(process.hProcess, 10000);
    }
    ::GetExitCodeProcess(process.hProcess, &run.exitCode);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return run;
}

std::string ReadFile(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<std::string> ReadLines(const std::filesystem::path& file)
{
    std::vector<std::string> lines;
    const std::string text = ReadFile(file);
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

bool DumpExceptionCode(const std::string& dump, DWORD* code)
{
    // Read field by field: the file's layout is packed, and the bytes may be short.
    const auto read32 = [&dump](size_t at, DWORD* value) {
        if (at + 4 > dump.size())
            return false;
        std::memcpy(value, dump.data() + at, 4);
        return true;
    };
    // "MDMP" read as a little-endian number.
    constexpr DWORD kSignature = 0x504D444D;
    DWORD signature = 0, streams = 0, directory = 0;
    if (!read32(offsetof(MINIDUMP_HEADER, Signature), &signature) || signature != kSignature
        || !read32(offsetof(MINIDUMP_HEADER, NumberOfStreams), &streams)
        || !read32(offsetof(MINIDUMP_HEADER, StreamDirectoryRva), &directory))
        return false;
    for (DWORD i = 0; i < streams; ++i) {
        const size_t entry = directory + size_t(i) * sizeof(MINIDUMP_DIRECTORY);
        DWORD type = 0, rva = 0;
        if (!read32(entry + offsetof(MINIDUMP_DIRECTORY, StreamType), &type)
            || !read32(entry + offsetof(MINIDUMP_DIRECTORY, Location) + offsetof(MINIDUMP_LOCATION_DESCRIPTOR, Rva),
                       &rva))
            return false;
        if (type == ExceptionStream)
            return read32(rva + offsetof(MINIDUMP_EXCEPTION_STREAM, ExceptionRecord)
                              + offsetof(MINIDUMP_EXCEPTION, ExceptionCode),
                          code);
    }
    return false;
}

} // namespace zvwin
