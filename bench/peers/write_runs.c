/* Writes the run files of a folder once more into another one, as plainly as C can: each whole beside its place, all
 * flushed together, then renamed. What is not zero in them is read into memory before; only the writing is timed.
 *
 *   write_runs FROM TO      prints the seconds
 */
#define _GNU_SOURCE
#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

enum { HEADER = 8448, PAIR = 48, MOST_PAIRS = 32767 };

struct run {
    char name[80];
    size_t count;
    char header[HEADER];
    unsigned short *values;
};

static void check(int holds, const char *what) {
    if (holds) return;
    perror(what);
    exit(1);
}

static void load(struct run *run, int folder, const char *name) {
    static char bytes[HEADER + PAIR * MOST_PAIRS];
    const int file = openat(folder, name, O_RDONLY);
    const ssize_t size = read(file, bytes, sizeof bytes);
    check(file >= 0 && size >= HEADER && strlen(name) < sizeof run->name, name);
    close(file);
    strcpy(run->name, name);
    memcpy(run->header, bytes, HEADER);
    run->count = ((size_t)size - HEADER) / PAIR;
    run->values = malloc(run->count * 2 + 1);
    for (size_t i = 0; i < run->count; ++i) memcpy(run->values + i, bytes + HEADER + i * PAIR, 2);
}

static void write_beside(const struct run *run, int folder, size_t number) {
    static char bytes[HEADER + PAIR * MOST_PAIRS]; /* what is between the values stays zero */
    char beside[40];
    const size_t size = HEADER + run->count * PAIR;
    snprintf(beside, sizeof beside, ".%zu.tmp", number);
    memcpy(bytes, run->header, HEADER);
    for (size_t i = 0; i < run->count; ++i) memcpy(bytes + HEADER + i * PAIR, run->values + i, 2);
    const int file = openat(folder, beside, O_CREAT | O_EXCL | O_WRONLY, 0666);
    check(file >= 0 && write(file, bytes, size) == (ssize_t)size, run->name);
    close(file);
}

static double now(void) {
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return (double)time.tv_sec + (double)time.tv_nsec * 1e-9;
}

int main(int argc, char **argv) {
    check(argc == 3, "write_runs FROM TO");
    const int from = open(argv[1], O_RDONLY), to = open(argv[2], O_RDONLY);
    DIR *const list = opendir(argv[1]);
    check(from >= 0 && to >= 0 && list != NULL, argv[1]);
    struct run *runs = NULL;
    size_t count = 0;
    for (struct dirent *entry = readdir(list); entry != NULL; entry = readdir(list)) {
        if (strstr(entry->d_name, ".rd2") == NULL) continue;
        if ((count & (count - 1)) == 0) runs = realloc(runs, (count == 0 ? 1 : 2 * count) * sizeof *runs);
        load(&runs[count++], from, entry->d_name);
    }
    sync();

    const double begin = now();
    for (size_t i = 0; i < count; ++i) write_beside(&runs[i], to, i);
    check(syncfs(to) == 0, argv[2]);
    for (size_t i = 0; i < count; ++i) {
        char beside[40];
        snprintf(beside, sizeof beside, ".%zu.tmp", i);
        check(renameat(to, beside, to, runs[i].name) == 0, runs[i].name);
    }
    check(fsync(to) == 0, argv[2]);
    printf("%.4f\n", now() - begin);
    return 0;
}
