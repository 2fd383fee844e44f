/* A library that a host loads after the crash handler is installed, and whose thread
 * recurses without end: zvprobe's "torture:overflow-dlopen". */
#include <pthread.h>

__attribute__((noinline)) int library_overflow_here(int depth)
{
    volatile char frame[4096];
    frame[0] = (char)depth;
    return library_overflow_here(depth + 1) + frame[0];
}

static void* run(void* unused)
{
    (void)unused;
    library_overflow_here(0);
    return 0;
}

__attribute__((visibility("default"))) int zv_overflow_in_library_thread(void)
{
    pthread_t thread;
    if (pthread_create(&thread, 0, run, 0) != 0)
        return -1;
    return pthread_join(thread, 0);
}
