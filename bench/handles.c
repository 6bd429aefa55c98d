/* Opens a directory many times without closing it, and prints by how many KiB the highest resident memory grew.
 *
 *   bench_handles <directory> <times>
 */
#define _POSIX_C_SOURCE 200809L
#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>

/* Of this program alone: what getrusage tells begins with the peak of the program that started it. */
static long peak_kib(void)
{
    char line[256];
    long peak = 0;
    FILE* status = fopen("/proc/self/status", "r");
    while (status && fgets(line, sizeof line, status))
        sscanf(line, "VmHWM: %ld", &peak);
    if (status)
        fclose(status);
    return peak;
}

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    struct rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 1;
    limit.rlim_cur = limit.rlim_max < 1048576 ? limit.rlim_max : 1048576;
    setrlimit(RLIMIT_NOFILE, &limit);
    long before = peak_kib();
    for (long left = atol(argv[2]); left > 0; --left) {
        if (!opendir(argv[1]))
            return 1;
    }
    printf("%ld\n", peak_kib() - before);
    return 0;
}
