// A library that a host loads after the crash handler is installed, and whose thread
// recurses without end: zvprobe's "torture:overflow-dlopen".
#include <pthread.h>

extern "C" __attribute__((noinline)) int library_overflow_here(int depth)
{
    volatile char frame[4096];
    frame[0] = char(depth);
    return library_overflow_here(depth + 1) + frame[0];
}

namespace {

void* run(void*)
{
    library_overflow_here(0);
    return nullptr;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int zv_overflow_in_library_thread()
{
    pthread_t thread;
    if (pthread_create(&thread, nullptr, run, nullptr) != 0)
        return -1;
    return pthread_join(thread, nullptr);
}
