#include "minidump_linux.h"

#include "clonevm_p.h"

// How the dump is taken
//
// The caller is usually a fatal-signal handler: the heap may be corrupt, any lock may be
// held by the thread that just died, and the other threads keep running. So the writer
// allocates nothing but fresh anonymous pages, issues every system call directly (no
// libc wrapper, no errno), uses the C library only for memcpy and its kin and for
// getauxval, none of which lock, and hands the real work to a helper process:
//
//  * The caller opens the file, then clones a helper process that shares the process's
//    memory (CLONE_VM, on a stack mapped for it: libc's fork() would run atfork handlers
//    and take the malloc locks, and a copy of the address space would cost time in
//    proportion to the heap) and waits for it. The helper has no exit signal, so an
//    application SIGCHLD handler never sees it and an ignored SIGCHLD cannot reap it
//    behind our back. It is a process of its own, so it may trace the process's threads.
//  * The helper stops every other thread with PTRACE_SEIZE + PTRACE_INTERRUPT, reads their
//    registers, and copies their stacks out of the parent with process_vm_readv while
//    they are stopped, so registers and stack bytes belong to the same instant.
//  * If the helper cannot be created, the caller writes the dump itself; if tracing is
//    refused, the helper still writes it. Either way the other threads are listed with an
//    empty context rather than left out.
//
// The file layout follows the minidump format: header, stream directory, then the streams
// in the order they are produced; offsets of what is not known yet are reserved and
// patched once known.

#if defined(__linux__) && (defined(__x86_64__) || defined(__aarch64__))

#include <elf.h>
#include <errno.h>
#include <fcntl.h>
#include <sched.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <sys/auxv.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <time.h>

#include <type_traits>

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace ZVUIFramework {
namespace Minidump {
namespace {

// ---------------------------------------------------------------------------------------
// System calls, straight to the kernel. They return -errno on failure.

#if defined(__x86_64__)
long Syscall6(long n, long a, long b, long c, long d, long e, long f)
{
    long ret;
    register long r10 __asm__("r10") = d;
    register long r8 __asm__("r8") = e;
    register long r9 __asm__("r9") = f;
    __asm__ volatile("syscall"
                     : "=a"(ret)
                     : "a"(n), "D"(a), "S"(b), "d"(c), "r"(r10), "r"(r8), "r"(r9)
                     : "rcx", "r11", "memory");
    return ret;
}
#else
long Syscall6(long n, long a, long b, long c, long d, long e, long f)
{
    register long x8 __asm__("x8") = n;
    register long x0 __asm__("x0") = a;
    register long x1 __asm__("x1") = b;
    register long x2 __asm__("x2") = c;
    register long x3 __asm__("x3") = d;
    register long x4 __asm__("x4") = e;
    register long x5 __asm__("x5") = f;
    __asm__ volatile("svc 0"
                     : "+r"(x0)
                     : "r"(x8), "r"(x1), "r"(x2), "r"(x3), "r"(x4), "r"(x5)
                     : "memory", "cc");
    return x0;
}
#endif

template <typename T>
long SysArg(T v)
{
    if constexpr (std::is_null_pointer_v<T>)
        return 0;
    else if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<long>(v);
    else
        return static_cast<long>(v);
}

template <typename... T>
long Sys(long n, T... args)
{
    static_assert(sizeof...(T) <= 6, "at most six arguments");
    const long a[7] = {SysArg(args)...};
    return Syscall6(n, a[0], a[1], a[2], a[3], a[4], a[5]);
}

int Close(int fd)
{
    return static_cast<int>(Sys(SYS_close, fd));
}

void SleepMicroseconds(long us)
{
    struct timespec ts = {us / 1000000, (us % 1000000) * 1000};
    Sys(SYS_nanosleep, &ts, nullptr);
}

int64_t MonotonicMilliseconds()
{
    struct timespec ts = {0, 0};
    Sys(SYS_clock_gettime, CLOCK_MONOTONIC, &ts);
    return int64_t(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

// ---------------------------------------------------------------------------------------
// Format constants.

constexpr uint32_t kSignature = 0x504d444d; // "MDMP"
constexpr uint32_t kVersion = 0xa793;

enum StreamType : uint32_t {
    kThreadListStream = 3,
    kModuleListStream = 4,
    kMemoryListStream = 5,
    kExceptionStream = 6,
    kSystemInfoStream = 7,
    kMiscInfoStream = 15,
    kLinuxCpuInfo = 0x47670003,
    kLinuxProcStatus = 0x47670004,
    kLinuxCmdLine = 0x47670006,
    kLinuxAuxv = 0x47670008,
    kLinuxMaps = 0x47670009,
    kLinuxDsoDebug = 0x4767000A,
};

constexpr uint32_t kPlatformLinux = 0x8201;
constexpr uint32_t kCvSignatureElf = 0x4270454c; // "LEpB": an ELF build id follows
constexpr uint32_t kMiscInfoProcessId = 0x1;

constexpr size_t kHeaderSize = 32;
constexpr size_t kDirectoryEntrySize = 12;
constexpr size_t kThreadSize = 48;
constexpr size_t kModuleSize = 108;
constexpr size_t kMemoryDescriptorSize = 16;
constexpr size_t kExceptionStreamSize = 168;
constexpr size_t kSystemInfoSize = 56;
constexpr size_t kMiscInfoSize = 24;
// The link-map stream's records use natural alignment: a u32 version, the RVA of the
// entry array and the entry count, four bytes of padding, then r_brk, r_ldbase and the
// address of the executable's dynamic section; each entry is l_addr, the RVA of the name
// (padded to eight bytes) and l_ld. The executable's dynamic section follows the record.
constexpr size_t kDebugRecordSize = 40;
constexpr size_t kLinkMapEntrySize = 24;

#if defined(__x86_64__)
constexpr uint16_t kProcessorArchitecture = 9;
constexpr size_t kContextSize = 1232;
// AMD64 | CONTROL | INTEGER | SEGMENTS | FLOATING_POINT
constexpr uint32_t kContextFlagsArch = 0x00100000;
constexpr uint32_t kContextFlagsFull = 0x0010000f;
#else
constexpr uint16_t kProcessorArchitecture = 12;
constexpr size_t kContextSize = 912;
// ARM64 | CONTROL | INTEGER | FLOATING_POINT
constexpr uint32_t kContextFlagsArch = 0x00400000;
constexpr uint32_t kContextFlagsFull = 0x00400007;
#endif

// ---------------------------------------------------------------------------------------
// Limits. They bound the scratch area, which is mapped once per dump and never grows.

constexpr uint64_t kStackCap = 256 * 1024;
// The x86-64 ABI lets leaf functions use 128 bytes below the stack pointer.
constexpr uint64_t kRedZone = 128;
constexpr uint64_t kCodeAroundIp = 256;
// How far below its stack an overflowed stack pointer may lie: the kernel's stack guard
// gap (256 pages), with room to spare.
constexpr uint64_t kOverflowGap = 2 * 1024 * 1024;
constexpr int kMaxThreads = 4096;
constexpr int kMaxMappings = 16384;
constexpr int kMaxModules = 1024;
constexpr int kMaxLinks = 2048;
constexpr int kMaxMemory = kMaxThreads + 8;
constexpr size_t kPathPoolSize = 256 * 1024;
constexpr size_t kIoSize = 64 * 1024;
constexpr size_t kBufSize = 64 * 1024;
constexpr size_t kLineSize = 8 * 1024;
constexpr size_t kMaxBuildId = 64;
constexpr size_t kAuxvSize = 4096;
constexpr int kMaxStreams = 16;
// Long enough for a large dump on a slow disk; short enough that a wedged helper does
// not keep a crashed process alive.
constexpr int64_t kHelperTimeoutMs = 30000;
// How long one thread may take to reach its ptrace stop (a thread in uninterruptible
// sleep never does; it is then dumped without registers).
constexpr int kStopWaitMs = 1000;

enum ThreadState : int32_t { kNew, kCrashed, kStopped, kNoRegisters, kGone };

struct ThreadSlot
{
    int32_t tid;
    int32_t state;
    int32_t resumeSignal;
    uint32_t contextRva;
    uint64_t teb;
    uint64_t stackStart;
    uint32_t stackSize;
    uint32_t stackRva;
};

struct MapSlot
{
    uint64_t start;
    uint64_t end;
    uint32_t readable;
    uint32_t executable;
};

struct ModuleSlot
{
    uint64_t base;
    uint64_t end;
    uint64_t inode;
    uint64_t device;
    uint32_t pathOffset;
    uint32_t pathLength;
    uint32_t buildIdLength;
    uint32_t executable;
    uint8_t buildId[kMaxBuildId];
};

struct LinkSlot
{
    uint64_t addr;
    uint64_t name;
    uint64_t ld;
};

struct MemorySlot
{
    uint64_t start;
    uint32_t size;
    uint32_t rva;
};

struct DirectoryEntry
{
    uint32_t type;
    uint32_t size;
    uint32_t rva;
};

struct Scratch
{
    alignas(16) uint8_t context[kContextSize];
    uint8_t io[kIoSize];
    uint8_t buf[kBufSize];
    char line[kLineSize];
    size_t lineLength;
    uint8_t auxv[kAuxvSize];
    size_t auxvSize;
    ThreadSlot threads[kMaxThreads];
    int threadCount;
    MapSlot maps[kMaxMappings];
    int mapCount;
    ModuleSlot modules[kMaxModules];
    int moduleCount;
    bool moduleOpen;
    char paths[kPathPoolSize];
    size_t pathUsed;
    LinkSlot links[kMaxLinks];
    int linkCount;
    MemorySlot memory[kMaxMemory];
    int memoryCount;
    DirectoryEntry streams[kMaxStreams];
    int streamCount;
    struct utsname uts;
#if defined(__x86_64__)
    struct user_regs_struct regs;
    struct user_fpregs_struct fpregs;
#else
    struct user_regs_struct regs;
    struct user_fpsimd_struct fpregs;
    uint64_t tls;
#endif
};

// What one dump is about.
struct Job
{
    int fd;
    pid_t pid;       // the process being dumped
    pid_t crashTid;  // its faulting thread
    pid_t callerTid; // the thread inside WriteLinuxMinidump
    int signo;
    const siginfo_t* info;
    const ucontext_t* context;
    uint64_t crashTeb;
    bool trace;      // may stop the other threads with ptrace
    // Bytes that must not land in the dump: the environment block at the top of the
    // main thread's stack, which the stack copy would otherwise carry along.
    uint64_t redactStart;
    uint64_t redactEnd;
};

// ---------------------------------------------------------------------------------------
// Small helpers that libc would otherwise provide.

void Put16(uint8_t* p, size_t off, uint16_t v) { memcpy(p + off, &v, sizeof v); }
void Put32(uint8_t* p, size_t off, uint32_t v) { memcpy(p + off, &v, sizeof v); }
void Put64(uint8_t* p, size_t off, uint64_t v) { memcpy(p + off, &v, sizeof v); }

uint32_t Get32(const uint8_t* p) { uint32_t v; memcpy(&v, p, sizeof v); return v; }
uint64_t Get64(const uint8_t* p) { uint64_t v; memcpy(&v, p, sizeof v); return v; }

size_t StrLen(const char* s)
{
    size_t n = 0;
    while (s[n])
        ++n;
    return n;
}

char* AppendStr(char* p, const char* end, const char* s)
{
    while (*s && p < end)
        *p++ = *s++;
    return p;
}

char* AppendDec(char* p, const char* end, uint64_t v)
{
    char tmp[24];
    int n = 0;
    do {
        tmp[n++] = char('0' + v % 10);
        v /= 10;
    } while (v);
    while (n && p < end)
        *p++ = tmp[--n];
    return p;
}

// "/proc/<pid>/<name>", NUL-terminated.
void ProcPath(char* out, size_t size, pid_t pid, const char* name)
{
    char* end = out + size - 1;
    char* p = AppendStr(out, end, "/proc/");
    p = AppendDec(p, end, uint64_t(pid));
    p = AppendStr(p, end, "/");
    p = AppendStr(p, end, name);
    *p = 0;
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool ParseHex(const char*& p, const char* end, uint64_t* out)
{
    uint64_t v = 0;
    const char* start = p;
    for (int d; p < end && (d = HexDigit(*p)) >= 0; ++p)
        v = (v << 4) | uint64_t(d);
    *out = v;
    return p != start;
}

bool ParseDec(const char*& p, const char* end, uint64_t* out)
{
    uint64_t v = 0;
    const char* start = p;
    for (; p < end && *p >= '0' && *p <= '9'; ++p)
        v = v * 10 + uint64_t(*p - '0');
    *out = v;
    return p != start;
}

// Reads a whole small file into `buf`; returns its size or -1.
long ReadSmallFile(const char* path, void* buf, size_t size)
{
    const int fd = int(Sys(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC));
    if (fd < 0)
        return -1;
    size_t got = 0;
    while (got < size) {
        const long n = Sys(SYS_read, fd, static_cast<char*>(buf) + got, size - got);
        if (n == -EINTR)
            continue;
        if (n <= 0)
            break;
        got += size_t(n);
    }
    Close(fd);
    return long(got);
}

// ---------------------------------------------------------------------------------------
// Output: appends through a buffer, patches reserved regions later.

struct Output
{
    int fd;
    uint8_t* buf;
    size_t used;
    uint64_t bufStart; // file offset of buf[0]
    bool failed;

    uint64_t Pos() const { return bufStart + used; }

    uint32_t Rva()
    {
        if (Pos() > 0xffffffffull)
            failed = true;
        return uint32_t(Pos());
    }

    void WriteAt(uint64_t off, const void* data, size_t n)
    {
        const uint8_t* p = static_cast<const uint8_t*>(data);
        while (n && !failed) {
            const long w = Sys(SYS_pwrite64, fd, p, n, off);
            if (w == -EINTR)
                continue;
            if (w <= 0) {
                failed = true;
                break;
            }
            p += w;
            off += uint64_t(w);
            n -= size_t(w);
        }
    }

    void Flush()
    {
        WriteAt(bufStart, buf, used);
        bufStart += used;
        used = 0;
    }

    void Append(const void* data, size_t n)
    {
        const uint8_t* p = static_cast<const uint8_t*>(data);
        while (n) {
            if (used == kIoSize)
                Flush();
            size_t chunk = kIoSize - used;
            if (chunk > n)
                chunk = n;
            memcpy(buf + used, p, chunk);
            used += chunk;
            p += chunk;
            n -= chunk;
        }
    }

    void Zeros(size_t n)
    {
        while (n) {
            if (used == kIoSize)
                Flush();
            size_t chunk = kIoSize - used;
            if (chunk > n)
                chunk = n;
            memset(buf + used, 0, chunk);
            used += chunk;
            n -= chunk;
        }
    }

    void Align(size_t a) { Zeros(size_t((a - Pos() % a) % a)); }

    uint32_t Reserve(size_t n, size_t align = 8)
    {
        Align(align);
        const uint32_t rva = Rva();
        Zeros(n);
        return rva;
    }

    // Overwrites bytes that were appended before.
    void Patch(uint64_t off, const void* data, size_t n)
    {
        const uint8_t* p = static_cast<const uint8_t*>(data);
        if (off < bufStart) {
            size_t head = size_t(bufStart - off);
            if (head > n)
                head = n;
            WriteAt(off, p, head);
            off += head;
            p += head;
            n -= head;
        }
        if (n && off + n <= Pos())
            memcpy(buf + (off - bufStart), p, n);
    }
};

// ---------------------------------------------------------------------------------------
// Memory of the dumped process. Reads never fault: they go through the kernel, which
// reports an unmapped page as an error instead of a signal.

struct Memory
{
    pid_t pid;
    int method; // 0: process_vm_readv, 1: /proc/<pid>/mem, 2: our own copy, 3: nothing
    int memFd;

    // Reads up to `n` bytes at `addr`; returns how many leading bytes were readable.
    size_t Read(uint64_t addr, void* dst, size_t n)
    {
        while (method < 3) {
            long r;
            if (method == 0 || method == 2) {
                struct iovec local = {dst, n};
                struct iovec remote = {reinterpret_cast<void*>(addr), n};
                const long target = method == 0 ? long(pid) : Sys(SYS_getpid);
                r = Sys(SYS_process_vm_readv, target, &local, 1, &remote, 1, 0);
            } else {
                if (memFd < 0) {
                    char path[64];
                    ProcPath(path, sizeof path, pid, "mem");
                    memFd = int(Sys(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC));
                }
                r = memFd < 0 ? long(memFd) : Sys(SYS_pread64, memFd, dst, n, addr);
            }
            if (r >= 0)
                return size_t(r);
            if (r == -EFAULT || r == -EIO || r == -EINTR)
                return 0;
            ++method; // not permitted or not available: fall back
        }
        return 0;
    }

    bool ReadExact(uint64_t addr, void* dst, size_t n)
    {
        size_t got = 0;
        while (got < n) {
            const size_t r = Read(addr + got, static_cast<uint8_t*>(dst) + got, n - got);
            if (r == 0)
                return false;
            got += r;
        }
        return true;
    }
};

struct Writer
{
    Job& job;
    Scratch* s;
    Output out;
    Memory mem;
    uint64_t entry = 0;
    uint64_t phdr = 0;
    uint64_t phnum = 0;
    uint64_t hwcap = 0;
    uint64_t hwcap2 = 0;

    Writer(Job& j, Scratch* scratch) : job(j), s(scratch)
    {
        out = {job.fd, s->io, 0, 0, false};
        mem = {job.pid, 0, -1};
    }

    void AddStream(uint32_t type, uint32_t rva, uint64_t size)
    {
        if (s->streamCount >= kMaxStreams)
            return;
        if (size > 0xffffffffull)
            size = 0xffffffffull;
        s->streams[s->streamCount++] = {type, uint32_t(size), rva};
    }

    // MINIDUMP_STRING: byte length, UTF-16 text, a NUL that the length leaves out.
    uint32_t WriteString(const char* text, size_t n)
    {
        uint32_t units = 0;
        for (int pass = 0; pass < 2; ++pass) {
            if (pass == 1) {
                out.Align(4);
                const uint32_t bytes = units * 2;
                out.Append(&bytes, 4);
            }
            size_t i = 0;
            while (i < n) {
                const uint8_t c = uint8_t(text[i]);
                uint32_t cp = 0xfffd;
                size_t len = 1;
                if (c < 0x80) {
                    cp = c;
                } else if ((c & 0xe0) == 0xc0) {
                    cp = c & 0x1f;
                    len = 2;
                } else if ((c & 0xf0) == 0xe0) {
                    cp = c & 0x0f;
                    len = 3;
                } else if ((c & 0xf8) == 0xf0) {
                    cp = c & 0x07;
                    len = 4;
                } else {
                    len = 0;
                }
                if (len > 1) {
                    if (i + len > n) {
                        len = 0;
                    } else {
                        for (size_t k = 1; k < len; ++k) {
                            const uint8_t cc = uint8_t(text[i + k]);
                            if ((cc & 0xc0) != 0x80) {
                                len = 0;
                                break;
                            }
                            cp = (cp << 6) | (cc & 0x3f);
                        }
                    }
                }
                if (len == 0) { // malformed: one replacement character per byte
                    cp = 0xfffd;
                    len = 1;
                }
                if (cp > 0x10ffff || (cp >= 0xd800 && cp <= 0xdfff))
                    cp = 0xfffd;
                i += len;
                if (cp >= 0x10000) {
                    if (pass == 0) {
                        units += 2;
                    } else {
                        const uint16_t pair[2] = {uint16_t(0xd800 + ((cp - 0x10000) >> 10)),
                                                  uint16_t(0xdc00 + ((cp - 0x10000) & 0x3ff))};
                        out.Append(pair, 4);
                    }
                } else if (pass == 0) {
                    ++units;
                } else {
                    const uint16_t u = uint16_t(cp);
                    out.Append(&u, 2);
                }
            }
        }
        const uint16_t nul = 0;
        const uint64_t start = out.Pos() - uint64_t(units) * 2 - 4;
        out.Append(&nul, 2);
        return uint32_t(start);
    }

    // Copies target memory into the file, with unreadable pages as zeros and the
    // redacted range blanked.
    void CopyMemory(uint64_t addr, uint64_t size)
    {
        while (size) {
            size_t chunk = size > kBufSize ? kBufSize : size_t(size);
            size_t got = mem.Read(addr, s->buf, chunk);
            if (got == 0) {
                // Skip to the next page; what cannot be read stays zero.
                got = size_t(4096 - addr % 4096);
                if (got > chunk)
                    got = chunk;
                memset(s->buf, 0, got);
            }
            if (job.redactEnd > job.redactStart && addr < job.redactEnd && addr + got > job.redactStart) {
                const uint64_t from = addr > job.redactStart ? addr : job.redactStart;
                const uint64_t to = addr + got < job.redactEnd ? addr + got : job.redactEnd;
                memset(s->buf + (from - addr), 0, size_t(to - from));
            }
            out.Append(s->buf, got);
            addr += got;
            size -= got;
        }
    }

    // Opens /proc/<pid>/<name>. A process that made itself non-dumpable hides its maps
    // and auxv from everyone but itself; the helper's own say the same (it shares the
    // parent's memory map), so they stand in.
    int OpenProcFile(const char* name, bool sameInHelper)
    {
        char path[64];
        ProcPath(path, sizeof path, job.pid, name);
        int fd = int(Sys(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC));
        if (fd < 0 && sameInHelper && job.pid != pid_t(Sys(SYS_getpid))) {
            char* end = path + sizeof path - 1;
            *AppendStr(AppendStr(path, end, "/proc/self/"), end, name) = 0;
            fd = int(Sys(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC));
        }
        return fd;
    }

    // Streams a file into the dump and closes it; `sink` sees the bytes as they go.
    bool CopyFile(int fd, uint32_t type, void (Writer::*sink)(const char*, size_t) = nullptr)
    {
        if (fd < 0)
            return false;
        out.Align(4);
        const uint32_t rva = out.Rva();
        uint64_t total = 0;
        for (;;) {
            const long n = Sys(SYS_read, fd, s->buf, kBufSize);
            if (n == -EINTR)
                continue;
            if (n <= 0)
                break;
            out.Append(s->buf, size_t(n));
            if (sink)
                (this->*sink)(reinterpret_cast<const char*>(s->buf), size_t(n));
            total += uint64_t(n);
        }
        Close(fd);
        if (sink && s->lineLength) {
            ParseMapLine(s->line, s->lineLength);
            s->lineLength = 0;
        }
        AddStream(type, rva, total);
        return true;
    }


    // ---- auxv and the process's memory layout ----------------------------------------

    void ReadAuxv()
    {
        const int fd = OpenProcFile("auxv", true);
        s->auxvSize = 0;
        while (fd >= 0 && s->auxvSize < kAuxvSize) {
            const long n = Sys(SYS_read, fd, s->auxv + s->auxvSize, kAuxvSize - s->auxvSize);
            if (n == -EINTR)
                continue;
            if (n <= 0)
                break;
            s->auxvSize += size_t(n);
        }
        if (fd >= 0)
            Close(fd);
        // A non-dumpable process cannot open its own auxv file either: ask the kernel
        // directly, or failing that (before Linux 6.4) rebuild the entries this writer and
        // debuggers use from the C library's copy.
        if (s->auxvSize == 0) {
            const long n = Sys(SYS_prctl, 0x41555856 /* PR_GET_AUXV */, s->auxv, kAuxvSize, 0, 0);
            if (n > 0 && size_t(n) <= kAuxvSize)
                s->auxvSize = size_t(n);
        }
        if (s->auxvSize == 0) {
            const unsigned long keys[] = {AT_PHDR, AT_PHENT, AT_PHNUM, AT_PAGESZ, AT_BASE, AT_ENTRY,
                                          AT_HWCAP, AT_HWCAP2, AT_CLKTCK, AT_SYSINFO_EHDR};
            for (unsigned long key : keys) {
                const unsigned long value = getauxval(key);
                if (value) {
                    Put64(s->auxv, s->auxvSize, key);
                    Put64(s->auxv, s->auxvSize + 8, value);
                    s->auxvSize += 16;
                }
            }
            if (s->auxvSize)
                s->auxvSize += 16; // AT_NULL, already zero
        }
        for (size_t off = 0; off + 16 <= s->auxvSize; off += 16) {
            const uint64_t key = Get64(s->auxv + off);
            const uint64_t value = Get64(s->auxv + off + 8);
            if (key == AT_NULL)
                break;
            if (key == AT_ENTRY)
                entry = value;
            else if (key == AT_PHDR)
                phdr = value;
            else if (key == AT_PHNUM)
                phnum = value;
            else if (key == AT_HWCAP)
                hwcap = value;
            else if (key == AT_HWCAP2)
                hwcap2 = value;
        }
    }

    void FeedMaps(const char* data, size_t n)
    {
        for (size_t i = 0; i < n; ++i) {
            if (data[i] == '\n') {
                ParseMapLine(s->line, s->lineLength);
                s->lineLength = 0;
            } else if (s->lineLength < kLineSize) {
                s->line[s->lineLength++] = data[i];
            }
        }
    }

    void CloseModule()
    {
        if (!s->moduleOpen)
            return;
        s->moduleOpen = false;
        if (s->modules[s->moduleCount].executable)
            ++s->moduleCount;
    }

    // "start-end perms offset major:minor inode   path"
    void ParseMapLine(const char* line, size_t n)
    {
        const char* p = line;
        const char* end = line + n;
        uint64_t start, stop, offset, major, minor, inode;
        if (!ParseHex(p, end, &start) || p >= end || *p++ != '-' || !ParseHex(p, end, &stop))
            return;
        if (end - p < 6 || *p++ != ' ')
            return;
        const bool readable = p[0] == 'r';
        const bool executable = p[2] == 'x';
        p += 4;
        if (p >= end || *p++ != ' ' || !ParseHex(p, end, &offset) || p >= end || *p++ != ' ')
            return;
        if (!ParseHex(p, end, &major) || p >= end || *p++ != ':' || !ParseHex(p, end, &minor))
            return;
        if (p >= end || *p++ != ' ' || !ParseDec(p, end, &inode))
            return;
        while (p < end && *p == ' ')
            ++p;
        const char* path = p;
        const size_t pathLength = size_t(end - p);

        if (s->mapCount < kMaxMappings)
            s->maps[s->mapCount++] = {start, stop, readable ? 1u : 0u, executable ? 1u : 0u};

        // Modules: consecutive mappings of one file, opened by its mapping at offset 0.
        // Anonymous mappings in between (bss, gaps) do not end a module.
        const bool isFile = pathLength > 0 && path[0] == '/';
        const bool isVdso = pathLength == 6 && memcmp(path, "[vdso]", 6) == 0;
        if ((!isFile && !isVdso) || s->moduleCount >= kMaxModules)
            return;
        const uint64_t device = (major << 32) | minor;
        ModuleSlot& cur = s->modules[s->moduleCount];
        if (s->moduleOpen && isFile && cur.inode == inode && cur.device == device && inode != 0) {
            if (stop > cur.end)
                cur.end = stop;
            cur.executable |= executable ? 1u : 0u;
            return;
        }
        if (offset != 0)
            return;
        CloseModule();
        if (s->moduleCount >= kMaxModules)
            return;
        const char* name = path;
        size_t nameLength = pathLength;
        if (isVdso) {
            name = "linux-vdso.so.1"; // the name the kernel gives it in its own dynamic section
            nameLength = StrLen(name);
        }
        if (s->pathUsed + nameLength > kPathPoolSize)
            return;
        memcpy(s->paths + s->pathUsed, name, nameLength);
        ModuleSlot& m = s->modules[s->moduleCount];
        m = {};
        m.base = start;
        m.end = stop;
        m.inode = isVdso ? 0 : inode;
        m.device = device;
        m.pathOffset = uint32_t(s->pathUsed);
        m.pathLength = uint32_t(nameLength);
        m.executable = executable ? 1u : 0u;
        s->pathUsed += nameLength;
        s->moduleOpen = true;
    }

    const MapSlot* FindMapping(uint64_t addr) const
    {
        int lo = 0, hi = s->mapCount;
        while (lo < hi) {
            const int mid = (lo + hi) / 2;
            if (s->maps[mid].end <= addr)
                lo = mid + 1;
            else
                hi = mid;
        }
        if (lo < s->mapCount && s->maps[lo].start <= addr && addr < s->maps[lo].end)
            return &s->maps[lo];
        return nullptr;
    }

    // The readable mapping that holds the stack at `sp`. After a stack overflow the
    // stack pointer lies below the stack: in a thread's guard page, or in the gap the
    // kernel keeps below a growing main stack. The frames that led there are in the
    // first readable mapping above it.
    const MapSlot* FindStackMapping(uint64_t sp) const
    {
        int lo = 0, hi = s->mapCount;
        while (lo < hi) {
            const int mid = (lo + hi) / 2;
            if (s->maps[mid].end <= sp)
                lo = mid + 1;
            else
                hi = mid;
        }
        // s->maps[lo] is the first mapping that ends above sp: the one that holds it,
        // or the next one up.
        for (int i = lo; i < s->mapCount && i <= lo + 1; ++i) {
            const MapSlot& m = s->maps[i];
            if (m.readable && (m.start <= sp || m.start - sp <= kOverflowGap))
                return &m;
            if (m.start > sp)
                break;
        }
        return nullptr;
    }

    // ---- ELF ------------------------------------------------------------------------

    // The load bias of the ELF image whose headers are mapped at `base`, and its program
    // headers in s->buf. Returns the number of program headers read.
    int ReadProgramHeaders(uint64_t base, uint64_t* bias)
    {
        Elf64_Ehdr eh;
        if (!mem.ReadExact(base, &eh, sizeof eh) || memcmp(eh.e_ident, ELFMAG, SELFMAG) != 0
            || eh.e_ident[EI_CLASS] != ELFCLASS64 || eh.e_phentsize != sizeof(Elf64_Phdr))
            return 0;
        int count = eh.e_phnum;
        if (count > int(kBufSize / sizeof(Elf64_Phdr)))
            count = int(kBufSize / sizeof(Elf64_Phdr));
        if (!mem.ReadExact(base + eh.e_phoff, s->buf, size_t(count) * sizeof(Elf64_Phdr)))
            return 0;
        uint64_t lowest = ~0ull;
        for (int i = 0; i < count; ++i) {
            Elf64_Phdr ph;
            memcpy(&ph, s->buf + size_t(i) * sizeof ph, sizeof ph);
            if (ph.p_type == PT_LOAD && ph.p_vaddr - ph.p_offset < lowest)
                lowest = ph.p_vaddr - ph.p_offset;
        }
        *bias = lowest == ~0ull ? base : base - lowest;
        return count;
    }

    void ReadBuildId(ModuleSlot& m)
    {
        uint64_t bias = 0;
        const int count = ReadProgramHeaders(m.base, &bias);
        // Copy the note headers out of s->buf first: reading the notes reuses it.
        Elf64_Phdr notes[16];
        int noteCount = 0;
        for (int i = 0; i < count && noteCount < 16; ++i) {
            Elf64_Phdr ph;
            memcpy(&ph, s->buf + size_t(i) * sizeof ph, sizeof ph);
            if (ph.p_type == PT_NOTE)
                notes[noteCount++] = ph;
        }
        for (int i = 0; i < noteCount; ++i) {
            size_t size = size_t(notes[i].p_memsz);
            if (size > 4096)
                size = 4096;
            if (!mem.ReadExact(bias + notes[i].p_vaddr, s->buf, size))
                continue;
            size_t off = 0;
            while (off + 12 <= size) {
                const uint32_t nameSize = Get32(s->buf + off);
                const uint32_t descSize = Get32(s->buf + off + 4);
                const uint32_t type = Get32(s->buf + off + 8);
                const size_t nameOff = off + 12;
                const size_t descOff = nameOff + ((size_t(nameSize) + 3) & ~size_t(3));
                const size_t next = descOff + ((size_t(descSize) + 3) & ~size_t(3));
                if (next > size || next <= off)
                    break;
                if (type == NT_GNU_BUILD_ID && nameSize == 4 && memcmp(s->buf + nameOff, "GNU", 4) == 0
                    && descSize > 0) {
                    m.buildIdLength = descSize > kMaxBuildId ? uint32_t(kMaxBuildId) : descSize;
                    memcpy(m.buildId, s->buf + descOff, m.buildIdLength);
                    return;
                }
                off = next;
            }
        }
    }

    // ---- threads ----------------------------------------------------------------------

    bool HasThread(pid_t tid) const
    {
        for (int i = 0; i < s->threadCount; ++i) {
            if (s->threads[i].tid == tid)
                return true;
        }
        return false;
    }

    // Adds the threads of /proc/<pid>/task not seen yet; returns how many.
    int EnumerateThreads()
    {
        char path[64];
        ProcPath(path, sizeof path, job.pid, "task");
        const int fd = int(Sys(SYS_openat, AT_FDCWD, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (fd < 0)
            return 0;
        int added = 0;
        for (;;) {
            const long n = Sys(SYS_getdents64, fd, s->buf, kBufSize);
            if (n <= 0)
                break;
            for (long off = 0; off < n;) {
                // struct linux_dirent64: ino (8), off (8), reclen (2), type (1), name
                uint16_t reclen;
                memcpy(&reclen, s->buf + off + 16, 2);
                const char* name = reinterpret_cast<const char*>(s->buf + off + 19);
                const char* p = name;
                uint64_t tid = 0;
                if (reclen == 0)
                    break;
                off += reclen;
                if (!ParseDec(p, name + 16, &tid) || *p != 0 || tid == 0)
                    continue;
                // One slot stays free for the crashing thread.
                if (!HasThread(pid_t(tid)) && s->threadCount < kMaxThreads - 1) {
                    s->threads[s->threadCount++] = {pid_t(tid), kNew, 0, 0, 0, 0, 0, 0};
                    ++added;
                }
            }
        }
        Close(fd);
        return added;
    }

    int32_t WaitForStop(pid_t tid, int32_t* resumeSignal)
    {
        const int64_t deadline = MonotonicMilliseconds() + kStopWaitMs;
        for (;;) {
            int status = 0;
            const long r = Sys(SYS_wait4, tid, &status, __WALL | WNOHANG, nullptr);
            if (r == tid) {
                if (!WIFSTOPPED(status))
                    return kGone;
                // A signal-delivery stop swallows the signal unless detach passes it on;
                // the interrupt and group stops carry no signal of their own.
                *resumeSignal = (status >> 16) == 0 ? WSTOPSIG(status) : 0;
                return kStopped;
            }
            if (r == -EINTR)
                continue;
            if (r < 0 || MonotonicMilliseconds() > deadline)
                return kNoRegisters;
            SleepMicroseconds(200);
        }
    }

    void StopThreads()
    {
        // Threads created while the first ones were being stopped show up in the next
        // round; once everything is stopped no more can appear.
        for (int round = 0; round < 4; ++round) {
            if (EnumerateThreads() == 0 && round > 0)
                break;
            for (int i = 0; i < s->threadCount; ++i) {
                ThreadSlot& t = s->threads[i];
                if (t.state != kNew)
                    continue;
                if (t.tid == job.crashTid) {
                    t.state = kCrashed;
                    continue;
                }
                if (!job.trace) {
                    t.state = kNoRegisters;
                    continue;
                }
                long r = Sys(SYS_ptrace, PTRACE_SEIZE, t.tid, 0, 0);
                if (r == 0)
                    r = Sys(SYS_ptrace, PTRACE_INTERRUPT, t.tid, 0, 0);
                if (r < 0) {
                    t.state = r == -ESRCH ? kGone : kNoRegisters;
                    continue;
                }
                t.state = WaitForStop(t.tid, &t.resumeSignal);
            }
        }
        if (job.crashTid > 0 && !HasThread(job.crashTid))
            s->threads[s->threadCount++] = {job.crashTid, kCrashed, 0, 0, 0, 0, 0, 0};
    }

    void ResumeThreads()
    {
        for (int i = 0; i < s->threadCount; ++i) {
            if (s->threads[i].state == kStopped)
                Sys(SYS_ptrace, PTRACE_DETACH, s->threads[i].tid, 0, s->threads[i].resumeSignal);
        }
    }

    // ---- registers --------------------------------------------------------------------

#if defined(__x86_64__)
    // Offsets into the AMD64 CONTEXT record.
    enum : size_t {
        kCtxFlags = 0x30, kCtxMxCsr = 0x34, kCtxCs = 0x38, kCtxDs = 0x3a, kCtxEs = 0x3c,
        kCtxFs = 0x3e, kCtxGs = 0x40, kCtxSs = 0x42, kCtxEFlags = 0x44,
        kCtxRax = 0x78, kCtxRcx = 0x80, kCtxRdx = 0x88, kCtxRbx = 0x90, kCtxRsp = 0x98,
        kCtxRbp = 0xa0, kCtxRsi = 0xa8, kCtxRdi = 0xb0, kCtxR8 = 0xb8, kCtxR9 = 0xc0,
        kCtxR10 = 0xc8, kCtxR11 = 0xd0, kCtxR12 = 0xd8, kCtxR13 = 0xe0, kCtxR14 = 0xe8,
        kCtxR15 = 0xf0, kCtxRip = 0xf8, kCtxFltSave = 0x100,
    };

    void ContextFromSignal(const ucontext_t* uc)
    {
        uint8_t* c = s->context;
        const greg_t* g = uc->uc_mcontext.gregs;
        Put32(c, kCtxFlags, kContextFlagsFull);
        Put64(c, kCtxRax, uint64_t(g[REG_RAX]));
        Put64(c, kCtxRcx, uint64_t(g[REG_RCX]));
        Put64(c, kCtxRdx, uint64_t(g[REG_RDX]));
        Put64(c, kCtxRbx, uint64_t(g[REG_RBX]));
        Put64(c, kCtxRsp, uint64_t(g[REG_RSP]));
        Put64(c, kCtxRbp, uint64_t(g[REG_RBP]));
        Put64(c, kCtxRsi, uint64_t(g[REG_RSI]));
        Put64(c, kCtxRdi, uint64_t(g[REG_RDI]));
        Put64(c, kCtxR8, uint64_t(g[REG_R8]));
        Put64(c, kCtxR9, uint64_t(g[REG_R9]));
        Put64(c, kCtxR10, uint64_t(g[REG_R10]));
        Put64(c, kCtxR11, uint64_t(g[REG_R11]));
        Put64(c, kCtxR12, uint64_t(g[REG_R12]));
        Put64(c, kCtxR13, uint64_t(g[REG_R13]));
        Put64(c, kCtxR14, uint64_t(g[REG_R14]));
        Put64(c, kCtxR15, uint64_t(g[REG_R15]));
        Put64(c, kCtxRip, uint64_t(g[REG_RIP]));
        Put32(c, kCtxEFlags, uint32_t(g[REG_EFL]));
        // The kernel packs cs, gs, fs and ss into one word.
        const uint64_t segs = uint64_t(g[REG_CSGSFS]);
        Put16(c, kCtxCs, uint16_t(segs));
        Put16(c, kCtxGs, uint16_t(segs >> 16));
        Put16(c, kCtxFs, uint16_t(segs >> 32));
        Put16(c, kCtxSs, uint16_t(segs >> 48));
        if (const auto* fp = uc->uc_mcontext.fpregs) {
            // The signal frame holds the FXSAVE image, which is the record's FltSave.
            memcpy(c + kCtxFltSave, fp, 512);
            Put32(c, kCtxMxCsr, fp->mxcsr);
        }
    }

    bool ContextFromThread(pid_t tid, uint64_t* teb)
    {
        if (Sys(SYS_ptrace, PTRACE_GETREGS, tid, 0, &s->regs) != 0)
            return false;
        const bool haveFp = Sys(SYS_ptrace, PTRACE_GETFPREGS, tid, 0, &s->fpregs) == 0;
        const auto& r = s->regs;
        uint8_t* c = s->context;
        Put32(c, kCtxFlags, haveFp ? kContextFlagsFull : kContextFlagsFull & ~0x8u);
        Put64(c, kCtxRax, r.rax);
        Put64(c, kCtxRcx, r.rcx);
        Put64(c, kCtxRdx, r.rdx);
        Put64(c, kCtxRbx, r.rbx);
        Put64(c, kCtxRsp, r.rsp);
        Put64(c, kCtxRbp, r.rbp);
        Put64(c, kCtxRsi, r.rsi);
        Put64(c, kCtxRdi, r.rdi);
        Put64(c, kCtxR8, r.r8);
        Put64(c, kCtxR9, r.r9);
        Put64(c, kCtxR10, r.r10);
        Put64(c, kCtxR11, r.r11);
        Put64(c, kCtxR12, r.r12);
        Put64(c, kCtxR13, r.r13);
        Put64(c, kCtxR14, r.r14);
        Put64(c, kCtxR15, r.r15);
        Put64(c, kCtxRip, r.rip);
        Put32(c, kCtxEFlags, uint32_t(r.eflags));
        Put16(c, kCtxCs, uint16_t(r.cs));
        Put16(c, kCtxDs, uint16_t(r.ds));
        Put16(c, kCtxEs, uint16_t(r.es));
        Put16(c, kCtxFs, uint16_t(r.fs));
        Put16(c, kCtxGs, uint16_t(r.gs));
        Put16(c, kCtxSs, uint16_t(r.ss));
        if (haveFp) {
            memcpy(c + kCtxFltSave, &s->fpregs, 512);
            Put32(c, kCtxMxCsr, s->fpregs.mxcsr);
        }
        *teb = r.fs_base;
        return true;
    }

    uint64_t StackPointer() const { return Get64(s->context + kCtxRsp); }
    uint64_t InstructionPointer() const { return Get64(s->context + kCtxRip); }
#else
    // Offsets into the ARM64 CONTEXT record.
    enum : size_t {
        kCtxFlags = 0, kCtxCpsr = 4, kCtxX = 8, kCtxSp = 256, kCtxPc = 264, kCtxV = 272,
        kCtxFpcr = 784, kCtxFpsr = 788,
    };

    void ContextFromSignal(const ucontext_t* uc)
    {
        uint8_t* c = s->context;
        const auto& m = uc->uc_mcontext;
        Put32(c, kCtxFlags, kContextFlagsFull);
        Put32(c, kCtxCpsr, uint32_t(m.pstate));
        for (int i = 0; i < 31; ++i) // x0-x28, fp, lr
            Put64(c, kCtxX + size_t(i) * 8, m.regs[i]);
        Put64(c, kCtxSp, m.sp);
        Put64(c, kCtxPc, m.pc);
        // The FP/SIMD registers are one of the tagged records in __reserved.
        const uint8_t* area = reinterpret_cast<const uint8_t*>(m.__reserved);
        const size_t areaSize = sizeof m.__reserved;
        for (size_t off = 0; off + 8 <= areaSize;) {
            const uint32_t magic = Get32(area + off);
            const uint32_t size = Get32(area + off + 4);
            if (magic == 0 || size < 8 || off + size > areaSize)
                break;
            if (magic == 0x46508001 && size >= 16 + 512) { // FPSIMD_MAGIC
                Put32(c, kCtxFpsr, Get32(area + off + 8));
                Put32(c, kCtxFpcr, Get32(area + off + 12));
                memcpy(c + kCtxV, area + off + 16, 512);
            }
            off += size;
        }
    }

    bool ContextFromThread(pid_t tid, uint64_t* teb)
    {
        struct iovec iov = {&s->regs, sizeof s->regs};
        if (Sys(SYS_ptrace, PTRACE_GETREGSET, tid, NT_PRSTATUS, &iov) != 0)
            return false;
        uint8_t* c = s->context;
        const auto& r = s->regs;
        Put32(c, kCtxFlags, kContextFlagsFull);
        Put32(c, kCtxCpsr, uint32_t(r.pstate));
        for (int i = 0; i < 31; ++i)
            Put64(c, kCtxX + size_t(i) * 8, r.regs[i]);
        Put64(c, kCtxSp, r.sp);
        Put64(c, kCtxPc, r.pc);
        struct iovec fpIov = {&s->fpregs, sizeof s->fpregs};
        if (Sys(SYS_ptrace, PTRACE_GETREGSET, tid, NT_PRFPREG, &fpIov) == 0) {
            memcpy(c + kCtxV, &s->fpregs.vregs, 512);
            Put32(c, kCtxFpsr, s->fpregs.fpsr);
            Put32(c, kCtxFpcr, s->fpregs.fpcr);
        } else {
            Put32(c, kCtxFlags, kContextFlagsFull & ~0x4u);
        }
        struct iovec tlsIov = {&s->tls, sizeof s->tls};
        if (Sys(SYS_ptrace, PTRACE_GETREGSET, tid, NT_ARM_TLS, &tlsIov) == 0)
            *teb = s->tls;
        return true;
    }

    uint64_t StackPointer() const { return Get64(s->context + kCtxSp); }
    uint64_t InstructionPointer() const { return Get64(s->context + kCtxPc); }
#endif

    // ---- streams ----------------------------------------------------------------------

    void WriteSystemInfo()
    {
        uint8_t si[kSystemInfoSize] = {};
        Put16(si, 0, kProcessorArchitecture);
        Put32(si, 20, kPlatformLinux);
        si[7] = 1; // workstation

        // Processors online, from the kernel's list such as "0-3,8-11".
        int cpus = 0;
        char list[256];
        const long n = ReadSmallFile("/sys/devices/system/cpu/online", list, sizeof list);
        for (const char* p = list; n > 0 && p < list + n;) {
            uint64_t first, last;
            if (!ParseDec(p, list + n, &first))
                break;
            last = first;
            if (p < list + n && *p == '-') {
                ++p;
                if (!ParseDec(p, list + n, &last))
                    break;
            }
            if (last >= first)
                cpus += int(last - first + 1);
            if (p < list + n && *p == ',')
                ++p;
            else
                break;
        }
        if (cpus == 0) {
            uint64_t mask[16] = {};
            const long bytes = Sys(SYS_sched_getaffinity, 0, sizeof mask, mask);
            for (long i = 0; i < bytes / 8; ++i) {
                for (uint64_t bits = mask[i]; bits; bits &= bits - 1)
                    ++cpus;
            }
        }
        si[6] = uint8_t(cpus > 255 ? 255 : cpus);

        // Kernel version "6.1.0-18-amd64" as major, minor, build.
        const bool haveUts = Sys(SYS_uname, &s->uts) == 0;
        if (haveUts) {
            const char* p = s->uts.release;
            const char* end = p + StrLen(p);
            uint64_t v[3] = {};
            for (int i = 0; i < 3; ++i) {
                ParseDec(p, end, &v[i]);
                if (p < end && *p == '.')
                    ++p;
                else
                    break;
            }
            Put32(si, 8, uint32_t(v[0]));
            Put32(si, 12, uint32_t(v[1]));
            Put32(si, 16, uint32_t(v[2]));
        }

#if defined(__x86_64__)
        unsigned a = 0, b = 0, c = 0, d = 0;
        if (__get_cpuid(0, &a, &b, &c, &d)) {
            Put32(si, 32, b); // "Genu" "ineI" "ntel": ebx, edx, ecx
            Put32(si, 36, d);
            Put32(si, 40, c);
            const bool amd = b == 0x68747541; // "Auth"
            if (__get_cpuid(1, &a, &b, &c, &d)) {
                Put32(si, 44, a);
                Put32(si, 48, d);
                unsigned family = (a >> 8) & 0xf;
                unsigned model = (a >> 4) & 0xf;
                if (family == 0xf)
                    family += (a >> 20) & 0xff;
                if (family == 0x6 || family >= 0xf)
                    model |= ((a >> 16) & 0xf) << 4;
                Put16(si, 2, uint16_t(family));
                Put16(si, 4, uint16_t((model << 8) | (a & 0xf)));
            }
            if (amd && __get_cpuid(0x80000001, &a, &b, &c, &d))
                Put32(si, 52, d);
        }
#else
        Put64(si, 32, hwcap);
        Put64(si, 40, hwcap2);
#endif
        const uint32_t rva = out.Reserve(kSystemInfoSize);
        if (haveUts) {
            // "Linux 6.1.0-18-amd64 #1 SMP ... x86_64", as the record's version text.
            char* text = s->line;
            char* end = text + kLineSize;
            char* p = AppendStr(text, end, s->uts.sysname);
            p = AppendStr(p, end, " ");
            p = AppendStr(p, end, s->uts.release);
            p = AppendStr(p, end, " ");
            p = AppendStr(p, end, s->uts.version);
            p = AppendStr(p, end, " ");
            p = AppendStr(p, end, s->uts.machine);
            Put32(si, 24, WriteString(text, size_t(p - text)));
        }
        out.Patch(rva, si, sizeof si);
        AddStream(kSystemInfoStream, rva, kSystemInfoSize);
    }

    void WriteMiscInfo()
    {
        uint8_t mi[kMiscInfoSize] = {};
        Put32(mi, 0, kMiscInfoSize);
        Put32(mi, 4, kMiscInfoProcessId);
        Put32(mi, 8, uint32_t(job.pid));
        const uint32_t rva = out.Reserve(kMiscInfoSize);
        out.Patch(rva, mi, sizeof mi);
        AddStream(kMiscInfoStream, rva, kMiscInfoSize);
    }

    void AddMemory(uint64_t start, uint32_t size, uint32_t rva)
    {
        if (s->memoryCount < kMaxMemory && size)
            s->memory[s->memoryCount++] = {start, size, rva};
    }

    uint32_t crashContextRva = 0;

    void WriteThreadList()
    {
        int listed = 0;
        for (int i = 0; i < s->threadCount; ++i)
            listed += s->threads[i].state != kGone ? 1 : 0;
        const uint32_t listRva = out.Reserve(4 + size_t(listed) * kThreadSize);
        const uint32_t count = uint32_t(listed);
        out.Patch(listRva, &count, 4);

        int index = 0;
        for (int i = 0; i < s->threadCount; ++i) {
            ThreadSlot& t = s->threads[i];
            if (t.state == kGone)
                continue;
            memset(s->context, 0, kContextSize);
            bool haveRegisters = false;
            if (t.state == kCrashed && job.context) {
                ContextFromSignal(job.context);
                t.teb = job.crashTeb;
                haveRegisters = true;
            } else if (t.state == kStopped) {
                haveRegisters = ContextFromThread(t.tid, &t.teb);
            }
            if (!haveRegisters) {
                // An empty record that still names the architecture.
                memset(s->context, 0, kContextSize);
                Put32(s->context, kCtxFlags, kContextFlagsArch);
            }
            t.contextRva = out.Reserve(0, 16);
            out.Append(s->context, kContextSize);
            if (t.state == kCrashed)
                crashContextRva = t.contextRva;

            if (haveRegisters) {
                const uint64_t sp = StackPointer();
                const MapSlot* m = FindStackMapping(sp);
                if (m) {
                    uint64_t start = sp >= kRedZone ? sp - kRedZone : 0;
                    if (start < m->start)
                        start = m->start;
                    uint64_t end = m->end;
                    if (end - start > kStackCap)
                        end = start + kStackCap;
                    t.stackStart = start;
                    t.stackSize = uint32_t(end - start);
                    t.stackRva = out.Reserve(0, 16);
                    CopyMemory(start, end - start);
                    AddMemory(t.stackStart, t.stackSize, t.stackRva);
                }
            }

            uint8_t rec[kThreadSize] = {};
            Put32(rec, 0, uint32_t(t.tid));
            Put64(rec, 16, t.teb);
            Put64(rec, 24, t.stackStart);
            Put32(rec, 32, t.stackSize);
            Put32(rec, 36, t.stackRva);
            Put32(rec, 40, uint32_t(kContextSize));
            Put32(rec, 44, t.contextRva);
            out.Patch(listRva + 4 + uint64_t(index) * kThreadSize, rec, sizeof rec);
            ++index;
        }
        AddStream(kThreadListStream, listRva, 4 + uint64_t(listed) * kThreadSize);
    }

    bool OverlapsMemory(uint64_t start, uint64_t end) const
    {
        for (int i = 0; i < s->memoryCount; ++i) {
            if (start < s->memory[i].start + s->memory[i].size && s->memory[i].start < end)
                return true;
        }
        return false;
    }

    void WriteException()
    {
        uint8_t ex[kExceptionStreamSize] = {};
        Put32(ex, 0, uint32_t(job.crashTid));
        Put32(ex, 8, uint32_t(job.signo));
        if (job.info) {
            Put32(ex, 12, uint32_t(job.info->si_code));
            // si_addr is meaningful for the signals a fault raises; for the others the
            // same bytes hold the sender's pid and uid.
            const int sig = job.signo;
            if (sig == SIGSEGV || sig == SIGBUS || sig == SIGILL || sig == SIGFPE || sig == SIGTRAP)
                Put64(ex, 24, uint64_t(reinterpret_cast<uintptr_t>(job.info->si_addr)));
        }
        if (crashContextRva) {
            Put32(ex, 160, uint32_t(kContextSize));
            Put32(ex, 164, crashContextRva);
        }
        const uint32_t rva = out.Reserve(kExceptionStreamSize);
        out.Patch(rva, ex, sizeof ex);
        AddStream(kExceptionStream, rva, kExceptionStreamSize);

        // The code around the faulting instruction, for a disassembly without the binary.
        if (job.context) {
            memset(s->context, 0, kContextSize);
            ContextFromSignal(job.context);
            const uint64_t ip = InstructionPointer();
            const MapSlot* m = FindMapping(ip);
            if (m && m->readable) {
                uint64_t start = ip >= kCodeAroundIp ? ip - kCodeAroundIp : 0;
                uint64_t end = ip + kCodeAroundIp;
                if (start < m->start)
                    start = m->start;
                if (end > m->end)
                    end = m->end;
                if (!OverlapsMemory(start, end)) {
                    const uint32_t at = out.Reserve(0, 16);
                    CopyMemory(start, end - start);
                    AddMemory(start, uint32_t(end - start), at);
                }
            }
        }
    }

    void WriteMemoryList()
    {
        const uint32_t rva = out.Reserve(0, 8);
        const uint32_t count = uint32_t(s->memoryCount);
        out.Append(&count, 4);
        for (int i = 0; i < s->memoryCount; ++i) {
            uint8_t d[kMemoryDescriptorSize];
            Put64(d, 0, s->memory[i].start);
            Put32(d, 8, s->memory[i].size);
            Put32(d, 12, s->memory[i].rva);
            out.Append(d, sizeof d);
        }
        AddStream(kMemoryListStream, rva, 4 + uint64_t(count) * kMemoryDescriptorSize);
    }

    void WriteModuleList()
    {
        CloseModule();
        // Keep only ELF images; put the main executable first, where readers look for it.
        int kept = 0;
        for (int i = 0; i < s->moduleCount; ++i) {
            ModuleSlot& m = s->modules[i];
            Elf64_Ehdr eh;
            if (!mem.ReadExact(m.base, &eh, sizeof eh) || memcmp(eh.e_ident, ELFMAG, SELFMAG) != 0)
                continue;
            ReadBuildId(m);
            if (kept != i)
                s->modules[kept] = m;
            if (entry >= s->modules[kept].base && entry < s->modules[kept].end && kept != 0) {
                const ModuleSlot first = s->modules[0];
                s->modules[0] = s->modules[kept];
                s->modules[kept] = first;
            }
            ++kept;
        }
        s->moduleCount = kept;

        const uint32_t listRva = out.Reserve(4 + size_t(kept) * kModuleSize, 8);
        const uint32_t count = uint32_t(kept);
        out.Patch(listRva, &count, 4);
        for (int i = 0; i < kept; ++i) {
            const ModuleSlot& m = s->modules[i];
            uint8_t rec[kModuleSize] = {};
            Put64(rec, 0, m.base);
            const uint64_t size = m.end - m.base;
            Put32(rec, 8, size > 0xffffffffull ? 0xffffffffu : uint32_t(size));
            Put32(rec, 20, WriteString(s->paths + m.pathOffset, m.pathLength));
            if (m.buildIdLength) {
                out.Align(4);
                const uint32_t cvRva = out.Rva();
                const uint32_t sig = kCvSignatureElf;
                out.Append(&sig, 4);
                out.Append(m.buildId, m.buildIdLength);
                Put32(rec, 76, 4 + m.buildIdLength);
                Put32(rec, 80, cvRva);
            }
            out.Patch(listRva + 4 + uint64_t(i) * kModuleSize, rec, sizeof rec);
        }
        AddStream(kModuleListStream, listRva, 4 + uint64_t(kept) * kModuleSize);
    }

    // r_debug and the link map, found through DT_DEBUG in the executable's dynamic section.
    void WriteDsoDebug()
    {
        if (!phdr || !phnum)
            return;
        size_t count = size_t(phnum);
        if (count > kBufSize / sizeof(Elf64_Phdr))
            count = kBufSize / sizeof(Elf64_Phdr);
        if (!mem.ReadExact(phdr, s->buf, count * sizeof(Elf64_Phdr)))
            return;
        uint64_t bias = 0, dynamic = 0, dynamicSize = 0;
        bool haveBias = false;
        for (size_t i = 0; i < count; ++i) {
            Elf64_Phdr ph;
            memcpy(&ph, s->buf + i * sizeof ph, sizeof ph);
            if (ph.p_type == PT_PHDR) {
                bias = phdr - ph.p_vaddr;
                haveBias = true;
            }
        }
        for (size_t i = 0; i < count; ++i) {
            Elf64_Phdr ph;
            memcpy(&ph, s->buf + i * sizeof ph, sizeof ph);
            if (ph.p_type == PT_DYNAMIC) {
                dynamic = (haveBias ? bias : 0) + ph.p_vaddr;
                dynamicSize = ph.p_memsz;
            }
        }
        if (!dynamic)
            return;
        if (dynamicSize > kBufSize)
            dynamicSize = kBufSize;

        uint64_t rDebug = 0;
        for (uint64_t off = 0; off + sizeof(Elf64_Dyn) <= dynamicSize; off += sizeof(Elf64_Dyn)) {
            Elf64_Dyn dyn;
            if (!mem.ReadExact(dynamic + off, &dyn, sizeof dyn) || dyn.d_tag == DT_NULL)
                break;
            if (dyn.d_tag == DT_DEBUG)
                rDebug = dyn.d_un.d_ptr;
        }

        // struct r_debug: int r_version; link_map* r_map; r_brk; int r_state; r_ldbase
        uint8_t rd[40] = {};
        s->linkCount = 0;
        if (rDebug && mem.ReadExact(rDebug, rd, sizeof rd)) {
            // struct link_map: l_addr, l_name, l_ld, l_next, l_prev
            for (uint64_t lm = Get64(rd + 8); lm && s->linkCount < kMaxLinks;) {
                uint64_t fields[4];
                if (!mem.ReadExact(lm, fields, sizeof fields))
                    break;
                s->links[s->linkCount++] = {fields[0], fields[1], fields[2]};
                lm = fields[3];
            }
        }

        const uint32_t rva = out.Reserve(kDebugRecordSize, 8);
        CopyMemory(dynamic, dynamicSize);
        const uint64_t streamSize = kDebugRecordSize + dynamicSize;

        const uint32_t mapRva = out.Reserve(size_t(s->linkCount) * kLinkMapEntrySize, 8);
        for (int i = 0; i < s->linkCount; ++i) {
            // The name, read up to its NUL.
            size_t length = 0;
            if (s->links[i].name) {
                while (length < kLineSize - 1) {
                    size_t want = 256;
                    if (want > kLineSize - 1 - length)
                        want = kLineSize - 1 - length;
                    const size_t got = mem.Read(s->links[i].name + length, s->line + length, want);
                    if (got == 0)
                        break;
                    const void* nul = memchr(s->line + length, 0, got);
                    if (nul) {
                        length = size_t(static_cast<const char*>(nul) - s->line);
                        break;
                    }
                    length += got;
                }
            }
            uint8_t e[kLinkMapEntrySize] = {};
            Put64(e, 0, s->links[i].addr);
            Put32(e, 8, WriteString(s->line, length));
            Put64(e, 16, s->links[i].ld);
            out.Patch(mapRva + uint64_t(i) * kLinkMapEntrySize, e, sizeof e);
        }

        uint8_t rec[kDebugRecordSize] = {};
        Put32(rec, 0, Get32(rd));
        Put32(rec, 4, s->linkCount ? mapRva : 0);
        Put32(rec, 8, uint32_t(s->linkCount));
        Put64(rec, 16, Get64(rd + 16));
        Put64(rec, 24, Get64(rd + 32));
        Put64(rec, 32, dynamic);
        out.Patch(rva, rec, sizeof rec);
        AddStream(kLinuxDsoDebug, rva, streamSize);
    }

    void WriteAuxv()
    {
        if (!s->auxvSize)
            return;
        const uint32_t rva = out.Reserve(0, 8);
        out.Append(s->auxv, s->auxvSize);
        AddStream(kLinuxAuxv, rva, s->auxvSize);
    }

    // The environment block sits at the top of the main thread's stack; find it so that
    // the stack copy can leave it out. Fields 50 and 51 of /proc/self/stat: the kernel
    // blanks them for other processes when the dumped one is not dumpable, and the
    // helper's copy of the memory map has the same bounds.
    void FindEnvironment(uint64_t* start, uint64_t* end)
    {
        char* text = s->line;
        const long n = ReadSmallFile("/proc/self/stat", text, kLineSize);
        if (n <= 0)
            return;
        // The command name (field 2) may hold spaces; count from its closing parenthesis.
        const char* p = text + n;
        while (p > text && p[-1] != ')')
            --p;
        const char* stop = text + n;
        int field = 2;
        uint64_t values[2] = {};
        while (p < stop && field < 51) {
            while (p < stop && *p == ' ')
                ++p;
            ++field;
            const char* begin = p;
            while (p < stop && *p != ' ' && *p != '\n')
                ++p;
            if (field == 50 || field == 51) {
                const char* q = begin;
                ParseDec(q, p, &values[field - 50]);
            }
        }
        if (field == 51 && values[1] > values[0]) {
            *start = values[0];
            *end = values[1];
        }
    }

    bool Run()
    {
        out.Reserve(kHeaderSize + kMaxStreams * kDirectoryEntrySize, 4);
        ReadAuxv();
        FindEnvironment(&job.redactStart, &job.redactEnd);

        WriteSystemInfo();
        WriteMiscInfo();
        CopyFile(OpenProcFile("status", false), kLinuxProcStatus);
        CopyFile(OpenProcFile("cmdline", true), kLinuxCmdLine);
        CopyFile(int(Sys(SYS_openat, AT_FDCWD, "/proc/cpuinfo", O_RDONLY | O_CLOEXEC)), kLinuxCpuInfo);
        WriteAuxv();

        // From here on the other threads stand still until ResumeThreads().
        StopThreads();
        CopyFile(OpenProcFile("maps", true), kLinuxMaps, &Writer::FeedMaps);
        WriteThreadList();
        WriteException();
        WriteMemoryList();
        WriteModuleList();
        WriteDsoDebug();
        ResumeThreads();

        out.Flush();
        uint8_t header[kHeaderSize] = {};
        Put32(header, 0, kSignature);
        Put32(header, 4, kVersion);
        Put32(header, 8, uint32_t(s->streamCount));
        Put32(header, 12, kHeaderSize);
        struct timespec now = {0, 0};
        Sys(SYS_clock_gettime, CLOCK_REALTIME, &now);
        Put32(header, 20, uint32_t(now.tv_sec));
        out.WriteAt(0, header, sizeof header);
        out.WriteAt(kHeaderSize, s->streams, size_t(s->streamCount) * kDirectoryEntrySize);
        if (mem.memFd >= 0)
            Close(mem.memFd);
        return !out.failed;
    }
};

static_assert(sizeof(DirectoryEntry) == kDirectoryEntrySize, "directory entries are packed");

bool WriteDump(Job& job)
{
    const size_t size = (sizeof(Scratch) + 4095) & ~size_t(4095);
    const long map = Sys(SYS_mmap, nullptr, size, PROT_READ | PROT_WRITE,
                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (map < 0 && map > -4096)
        return false;
    // Fresh anonymous pages are zero: every count in Scratch starts at 0.
    Scratch* s = reinterpret_cast<Scratch*>(map);
    bool ok;
    {
        Writer writer(job, s);
        ok = writer.Run();
    }
    Sys(SYS_munmap, s, size);
    return ok;
}

enum HelperExit { kHelperOk = 0, kHelperWriteFailed = 1, kHelperNoGo = 2 };

// The helper's stack: it shares the caller's memory, so it cannot use the caller's.
[[maybe_unused]] constexpr size_t kHelperStackSize = 512 * 1024;

struct HelperStart
{
    Job job;
    int goFd;
};

[[noreturn]] void HelperMain(Job job, int goFd)
{
    // The helper must never run the application's handlers: a fault in here should end
    // the helper, not start a second dump, and a terminal's ^C belongs to the parent.
    uint64_t all = ~0ull;
    Sys(SYS_rt_sigprocmask, SIG_SETMASK, &all, nullptr, 8);
    const uint64_t defaultAction[4] = {0, 0, 0, 0}; // SIG_DFL, no flags, empty mask
    const int fatal[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP, SIGSYS};
    for (int sig : fatal)
        Sys(SYS_rt_sigaction, sig, defaultAction, nullptr, 8);

    // Wait until the parent has made us its ptracer.
    char go = 0;
    long n;
    do {
        n = Sys(SYS_read, goFd, &go, 1);
    } while (n == -EINTR);
    Close(goFd);
    if (n != 1)
        Sys(SYS_exit_group, kHelperNoGo);

    job.trace = true;
    const bool ok = WriteDump(job);
    Sys(SYS_exit_group, ok ? kHelperOk : kHelperWriteFailed);
    __builtin_unreachable();
}

int HelperEntry(void* raw)
{
    const HelperStart* start = static_cast<const HelperStart*>(raw);
    HelperMain(start->job, start->goFd);
}

// Waits for the helper, and ends it if it takes too long. Returns its wait status or -1.
int WaitForHelper(pid_t helper)
{
    const int64_t deadline = MonotonicMilliseconds() + kHelperTimeoutMs;
    for (;;) {
        int status = 0;
        const long r = Sys(SYS_wait4, helper, &status, __WALL | WNOHANG, nullptr);
        if (r == helper)
            return status;
        if (r < 0 && r != -EINTR)
            return -1;
        if (MonotonicMilliseconds() > deadline) {
            Sys(SYS_kill, helper, SIGKILL);
            while (Sys(SYS_wait4, helper, &status, __WALL, nullptr) == -EINTR) {
            }
            return -1;
        }
        SleepMicroseconds(1000);
    }
}

uint64_t ThreadPointer()
{
#if defined(__x86_64__)
    uint64_t fs = 0;
    Sys(SYS_arch_prctl, 0x1003 /* ARCH_GET_FS */, &fs);
    return fs;
#else
    uint64_t tp;
    __asm__ volatile("mrs %0, tpidr_el0" : "=r"(tp));
    return tp;
#endif
}

} // namespace

bool WriteLinuxMinidump(const char* path, int signo, const siginfo_t* info, const ucontext_t* context,
                        pid_t crashTid)
{
    if (!path || !*path)
        return false;
    const int fd = int(Sys(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (fd < 0)
        return false;

    Job job = {};
    job.fd = fd;
    job.pid = pid_t(Sys(SYS_getpid));
    job.callerTid = pid_t(Sys(SYS_gettid));
    job.crashTid = crashTid;
    job.signo = signo;
    job.info = info;
    job.context = context;
    job.crashTeb = crashTid == job.callerTid ? ThreadPointer() : 0;

    bool ok = false;
    int go[2];
#if ZVCORE_CLONE_SHARES_MEMORY
    const long stack = Sys(SYS_mmap, nullptr, kHelperStackSize, PROT_READ | PROT_WRITE,
                           MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0);
    const bool mapped = !(stack < 0 && stack >= -4095);
#else
    const bool mapped = true;
#endif
    if (mapped && Sys(SYS_pipe2, go, O_CLOEXEC) == 0) {
        HelperStart start{job, go[0]};
        // No exit signal, and a tracer of ours cannot follow into the helper. The stack
        // grows down from the end of its mapping.
#if ZVCORE_CLONE_SHARES_MEMORY
        const long helper = ::clone(HelperEntry, reinterpret_cast<char*>(stack) + kHelperStackSize,
                                    CLONE_VM | CLONE_UNTRACED, &start);
#else
        const long helper = Sys(SYS_clone, CLONE_UNTRACED, 0, 0, 0, 0);
        if (helper == 0)
            HelperEntry(&start);
#endif
        Close(go[0]);
        if (helper > 0) {
            // Under Yama's restricted ptrace only a named tracer may attach to us.
            const bool named = Sys(SYS_prctl, PR_SET_PTRACER, helper, 0, 0, 0) == 0;
            long w;
            do {
                w = Sys(SYS_write, go[1], "g", 1);
            } while (w == -EINTR);
            Close(go[1]);
            const int status = WaitForHelper(pid_t(helper));
            if (named)
                Sys(SYS_prctl, PR_SET_PTRACER, 0, 0, 0, 0);
            ok = status != -1 && WIFEXITED(status) && WEXITSTATUS(status) == kHelperOk;
            Close(fd);
#if ZVCORE_CLONE_SHARES_MEMORY
            // A helper that was killed may still be leaving; its stack goes once it is gone.
            if (status != -1)
                Sys(SYS_munmap, stack, kHelperStackSize);
#endif
            return ok;
        }
        Close(go[1]);
    }
#if ZVCORE_CLONE_SHARES_MEMORY
    if (mapped)
        Sys(SYS_munmap, stack, kHelperStackSize);
#endif

    // No helper: write the dump from here. The other threads keep running, so they are
    // listed without registers and stacks.
    job.trace = false;
    ok = WriteDump(job);
    Close(fd);
    return ok;
}

} // namespace Minidump
} // namespace ZVUIFramework

#else // not Linux on x86-64 or ARM64

namespace ZVUIFramework {
namespace Minidump {

bool WriteLinuxMinidump(const char*, int, const siginfo_t*, const ucontext_t*, pid_t)
{
    return false;
}

} // namespace Minidump
} // namespace ZVUIFramework

#endif
