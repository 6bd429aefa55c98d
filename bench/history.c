/* The floor of reading a history: reads the files named on standard input, digests each with OpenSSL, and appends the
 * lines of a file to a log, with an open, a write and a close for each. Prints the moment of its end, in ns of the
 * monotonic clock, and its time on the processor in ns.
 *
 *   bench_history <file with the lines> <log to append to>
 */
#define _POSIX_C_SOURCE 200809L
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/md5.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

static unsigned char content[65536];
static unsigned char digest[MD5_DIGEST_LENGTH];

static int digest_file(const char* path)
{
    FILE* file = fopen(path, "rb");
    if (!file)
        return 0;
    size_t length = fread(content, 1, sizeof content, file);
    fclose(file);
    MD5(content, length, digest);
    return 1;
}

static int append(const char* path, const char* line)
{
    FILE* log = fopen(path, "a+");
    if (!log)
        return 0;
    fputs(line, log);
    fflush(log);
    return fclose(log) == 0;
}

static long long nanoseconds(clockid_t clock)
{
    struct timespec now;
    clock_gettime(clock, &now);
    return (long long)now.tv_sec * 1000000000LL + now.tv_nsec;
}

int main(int argc, char** argv)
{
    static char line[8192];
    if (argc != 3)
        return 2;
    while (fgets(line, sizeof line, stdin)) {
        line[strcspn(line, "\n")] = '\0';
        if (!digest_file(line))
            return 1;
    }
    FILE* lines = fopen(argv[1], "r");
    if (!lines)
        return 1;
    while (fgets(line, sizeof line, lines)) {
        if (!append(argv[2], line))
            return 1;
    }
    fclose(lines);
    printf("%lld %lld\n", nanoseconds(CLOCK_MONOTONIC), nanoseconds(CLOCK_PROCESS_CPUTIME_ID));
    return 0;
}
