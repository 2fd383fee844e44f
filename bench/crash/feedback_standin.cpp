// Stands in for the feedback program: records when it started (CLOCK_MONOTONIC, in
// nanoseconds) in the file named by ZVBENCH_FEEDBACK_STAMP, first thing, and ends.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

int main()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    const char* path = std::getenv("ZVBENCH_FEEDBACK_STAMP");
    if (!path)
        return 1;
    char line[64];
    const int n = std::snprintf(line, sizeof line, "%lld\n",
                                static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec);
    const int fd = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return 1;
    const bool written = ::write(fd, line, size_t(n)) == n;
    ::close(fd);
    return written ? 0 : 1;
}
