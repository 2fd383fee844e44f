// Thread creation under the crash handler: every thread created after InitCrashHandle
// gets an alternate signal stack on its way in and gives it back on its way out. The
// baseline is the C library's own pthread_create, called directly, in the same process
// and in turns with the measured one.
#include "zvbench.h"

#include <ZVCore/ZVApplicationInfo>

#include <QtCore/QCoreApplication>

#include <dlfcn.h>
#include <pthread.h>

using namespace ZVBench;

namespace {

constexpr int kThreadsPerRun = 1000;

using CreateFunction = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

void* nothing(void*)
{
    return nullptr;
}

// Creates and joins kThreadsPerRun threads, one after another.
void createAndJoin(CreateFunction create)
{
    for (int i = 0; i < kThreadsPerRun; ++i) {
        pthread_t thread;
        if (create(&thread, nullptr, nothing, nullptr) == 0)
            pthread_join(thread, nullptr);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    void* libc = dlopen("libc.so.6", RTLD_NOW | RTLD_NOLOAD);
    const auto plain = libc ? reinterpret_cast<CreateFunction>(dlsym(libc, "pthread_create")) : nullptr;
    if (!plain || plain == &pthread_create) {
        progress(QStringLiteral("the C library's pthread_create is not reachable apart from the frame's"));
        return 1;
    }
    ZVUIFramework::ZVApplicationInfo::InitCrashHandle();

    if (underCallgrind())
        return 0;
    progress(QStringLiteral("threads: %1 created and joined per run, under the handler and plainly").arg(kThreadsPerRun));
    const auto [framed, bare] = timePair([] { createAndJoin(&pthread_create); }, [plain] { createAndJoin(plain); }, 21, 2);
    Row row;
    row.benchmark = QStringLiteral("%1 threads created and joined, each with its alternate stack").arg(kThreadsPerRun);
    row.value = framed.median();
    row.baseline = QStringLiteral("the C library's pthread_create, same run");
    row.baselineValue = bare.median();
    row.goal = Goal::Report;
    row.goalText = QStringLiteral("report");
    row.runs = int(framed.ms.size());
    row.note = QStringLiteral("per thread: a guarded 256 KiB stack mapped, installed, turned off and unmapped");
    emitRow(row);
    return 0;
}
