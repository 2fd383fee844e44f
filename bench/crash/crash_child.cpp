// A host that crashes: the frame's crash handler installed, 500 MB of heap in use (or as
// many megabytes as ZVBENCH_HEAP_MB says), eight threads (this one and seven workers,
// each a few calls deep), then a write through a null pointer on this thread. Before
// the fault it tells its parent where its heap blocks lie (in the file named by
// ZVBENCH_HEAP_RANGES) and, on standard output, when it faults:
// "fault <CLOCK_MONOTONIC ns>".
#include <ZVCore/ZVApplicationInfo>

#include <QtWidgets/QApplication>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <thread>
#include <vector>

#include <unistd.h>

using ZVUIFramework::ZVApplicationInfo;

namespace {

constexpr size_t kHeapBlock = 1024 * 1024;
constexpr int kWorkers = 7;

std::atomic<int> g_ready{0};

qint64 nsOf(clockid_t clock)
{
    timespec ts;
    clock_gettime(clock, &ts);
    return qint64(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

// A few frames of stack with something on them, then wait for the end.
__attribute__((noinline)) void workerDepth(int depth)
{
    volatile char frame[512];
    std::memset(const_cast<char*>(frame), depth, sizeof frame);
    if (depth > 0) {
        workerDepth(depth - 1);
        return;
    }
    g_ready.fetch_add(1);
    for (;;)
        ::pause();
}

__attribute__((noinline)) void crashHere()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 42;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ZVApplicationInfo::InitCrashHandle();
    ZVApplicationInfo* context = ZVApplicationInfo::GetInstance();
    context->SetSendEmailInfo(QStringLiteral("reports@example.com"), QString());
    context->SetUserEmailInfo(QStringLiteral("user@example.com"));

    const QByteArray megabytes = qgetenv("ZVBENCH_HEAP_MB");
    const int blocks = megabytes.isEmpty() ? 500 : megabytes.toInt();
    std::vector<char*> heap;
    for (int i = 0; i < blocks; ++i) {
        char* block = static_cast<char*>(std::malloc(kHeapBlock));
        if (!block)
            return 2;
        std::memset(block, 0x5A, kHeapBlock);
        heap.push_back(block);
    }
    if (const char* rangesPath = std::getenv("ZVBENCH_HEAP_RANGES")) {
        if (FILE* ranges = std::fopen(rangesPath, "w")) {
            for (char* block : heap)
                std::fprintf(ranges, "%llx %llx\n", static_cast<unsigned long long>(reinterpret_cast<quintptr>(block)),
                             static_cast<unsigned long long>(reinterpret_cast<quintptr>(block) + kHeapBlock));
            std::fclose(ranges);
        }
    }

    for (int i = 0; i < kWorkers; ++i)
        std::thread([i] { workerDepth(4 + i); }).detach();
    while (g_ready.load() < kWorkers)
        ::usleep(1000);

    char line[64];
    const int n = std::snprintf(line, sizeof line, "fault %lld\n", static_cast<long long>(nsOf(CLOCK_MONOTONIC)));
    if (::write(STDOUT_FILENO, line, size_t(n)) != n)
        return 3;
    crashHere();
    return 0;
}
