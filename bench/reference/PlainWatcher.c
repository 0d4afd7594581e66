/*
 * The least that can be done: waits for the log of a store to grow, reads the newest messages with the
 * program's query and writes the first run of four to six digits as one line. No toolkit, no threads, no
 * preferences, no throttle, no clipboard.
 *
 *   plain-watcher STORE
 *
 * It is fair to the program in that it reads the commit and not the state before: like the program it
 * asks for the writer's lock, with 100 microseconds between the questions, and reads once it is free.
 */
#include <sqlite3.h>

#include <ctype.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/inotify.h>
#include <time.h>
#include <unistd.h>

static const char *const query = "SELECT rowid, text, HEX(attributedBody), attributedBody FROM message "
                                 "ORDER BY date DESC LIMIT 10";

static void fail(const char *what)
{
    perror(what);
    exit(1);
}

static int is_being_written(int index)
{
    struct flock lock;
    memset(&lock, 0, sizeof lock);
    lock.l_type = F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = 120; /* the writer's lock in SQLite's shared index */
    lock.l_len = 1;
    return fcntl(index, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

/* Writes the first run of four to six digits of `text`, if there is one. */
static int write_code(const char *text)
{
    while (*text != '\0') {
        size_t length = 0;
        while (isdigit((unsigned char)text[length])) {
            ++length;
        }
        if (length >= 4 && length <= 6) {
            char line[8];
            memcpy(line, text, length);
            line[length] = '\n';
            if (write(STDOUT_FILENO, line, length + 1) < 0) {
                fail("write");
            }
            return 1;
        }
        text += length > 0 ? length : 1;
    }
    return 0;
}

static void read_newest(sqlite3 *store)
{
    sqlite3_stmt *statement = NULL;
    if (sqlite3_prepare(store, query, -1, &statement, NULL) != SQLITE_OK) {
        fprintf(stderr, "%s\n", sqlite3_errmsg(store));
        exit(1);
    }
    int written = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        const char *const text = (const char *)sqlite3_column_text(statement, 1);
        const char *const body = (const char *)sqlite3_column_text(statement, 2);
        if (!written && text != NULL && body != NULL) {
            written = write_code(text);
        }
    }
    sqlite3_finalize(statement);
}

int main(int argc, char *argv[])
{
    char log[4096];
    char index_name[4096];
    sqlite3 *store = NULL;
    if (argc != 2) {
        fprintf(stderr, "Usage: plain-watcher STORE\n");
        return 2;
    }
    snprintf(log, sizeof log, "%s-wal", argv[1]);
    snprintf(index_name, sizeof index_name, "%s-shm", argv[1]);
    if (sqlite3_open_v2(argv[1], &store, SQLITE_OPEN_READWRITE, NULL) != SQLITE_OK) {
        fprintf(stderr, "%s\n", sqlite3_errmsg(store));
        return 1;
    }
    read_newest(store);
    const int notifications = inotify_init1(IN_CLOEXEC);
    const int index = open(index_name, O_RDONLY | O_CLOEXEC);
    if (notifications < 0 || index < 0 || inotify_add_watch(notifications, log, IN_MODIFY) < 0) {
        fail("watch");
    }
    if (write(STDOUT_FILENO, "ready\n", 6) < 0) {
        fail("write");
    }
    char events[4096];
    while (read(notifications, events, sizeof events) > 0) {
        const struct timespec pause = {0, 100000};
        while (is_being_written(index)) {
            nanosleep(&pause, NULL);
        }
        /* What came meanwhile belongs to the commit that is read now. */
        if (fcntl(notifications, F_SETFL, O_NONBLOCK) == 0) {
            while (read(notifications, events, sizeof events) > 0) {
            }
            (void)fcntl(notifications, F_SETFL, 0);
        }
        read_newest(store);
    }
    return 0;
}
