#include "tests/faults/FaultTable.h"

#include <csignal>

namespace orlimo {

namespace {

using Phase = FaultRow::Phase;
using Settings = FaultRow::Settings;
using LoginItem = FaultRow::LoginItem;

const Reaction unnoticed{.copies = false};

/// The newest messages are asked for, and only `line` comes of it.
Reaction refusal(const std::string& line)
{
    return {.copies = false, .lines = {{"ready to access disk", line}}};
}

/// A start on a log that cannot be watched.
const std::vector<std::string> refusedStart{
    "Database init",
    "database connected!!",
    "OrlimoApp init",
    "registFileObserver",
    "init file monitor",
    "file access not allowed",
};

/// A start on a store that cannot be opened.
const std::vector<std::string> closedStoreStart{
    "Database init",
    "database connection:  unable to open database file",
    "OrlimoApp init",
    "registFileObserver",
    "init file monitor",
    "file access allowed",
};

const Reaction withoutStore = refusal("error preparing fetch limit : v1out of memory");

/// A fault while the program runs, for which a check fails with this line.
FaultRow failedRead(const std::string& name, const std::string& rules, const std::string& error)
{
    return {
        .name = name,
        .rules = rules,
        .phase = Phase::whileRunning,
        .duringFault = refusal("error preparing fetch limit : v1" + error),
    };
}

/// A fault while the program runs that nobody notices.
FaultRow harmless(const std::string& name, const std::string& rules)
{
    return {.name = name, .rules = rules, .phase = Phase::whileRunning};
}

FaultGroup store()
{
    const auto closed = [](const std::string& error) {
        return FaultRow{
            .name = "the store cannot be opened (" + error + ")",
            .rules = "open */chat.db " + error + " always",
            .start = closedStoreStart,
            .duringFault = withoutStore,
            .afterFault = withoutStore,
        };
    };
    FaultGroup group{
        "The message store",
        {
            closed("EACCES"),
            closed("EMFILE"),
            {
                .name = "the shared index cannot be opened by the reader (EACCES)",
                .rules = "open */chat.db-shm EACCES always",
                .duringFault =
                    refusal("error preparing fetch limit : v1unable to open database file"),
            },
            failedRead(
                "the log cannot be opened by the reader (EMFILE)",
                "open */chat.db-wal EMFILE always",
                "unable to open database file"),
            failedRead(
                "the size of the store cannot be asked (EIO)",
                "fstat */chat.db EIO always",
                "disk I/O error"),
            failedRead(
                "the size of the shared index cannot be asked (EIO)",
                "fstat */chat.db-shm EIO always",
                "disk I/O error"),
            failedRead(
                "the store cannot be read (EIO)", "pread */chat.db EIO always", "disk I/O error"),
            failedRead(
                "the log cannot be read (EIO)", "pread */chat.db-wal EIO always", "disk I/O error"),
            harmless("reading is interrupted (EINTR)", "pread */chat.db* EINTR 3"),
            harmless("reading brings a part at a time", "pread */chat.db-wal part always"),
            failedRead(
                "the shared index cannot be mapped (ENOMEM)",
                "mmap */chat.db-shm ENOMEM always",
                "disk I/O error"),
            failedRead(
                "the store cannot be locked (EIO)", "lock */chat.db EIO always", "disk I/O error"),
            harmless(
                "the shared index is locked for a moment (EAGAIN)", "lock */chat.db-shm EAGAIN 5"),
            failedRead(
                "locks run out (ENOLCK)", "lock */chat.db* ENOLCK always", "database is locked"),
        },
    };
    for (FaultRow& row : group.rows) {
        row.hasEmptyLog = row.rules.starts_with("pread */chat.db EIO");
    }
    return group;
}

FaultGroup watch()
{
    const auto refused = [](const std::string& name, const std::string& rules) {
        return FaultRow{
            .name = name,
            .rules = rules,
            .start = refusedStart,
            .duringFault = unnoticed,
            .afterFault = unnoticed,
        };
    };
    return {
        "The watch on the log",
        {
            refused(
                "the log cannot be opened for watching (EACCES)",
                "open */chat.db-wal EACCES always"),
            refused(
                "the log cannot be opened for watching (EMFILE)",
                "open */chat.db-wal EMFILE always"),
            refused(
                "there is no watch left (`inotify_init1`, EMFILE)",
                "inotify_init inotify EMFILE always"),
            refused(
                "there is no watch left (`inotify_add_watch`, ENOSPC)",
                "inotify_add_watch */chat.db-wal ENOSPC always"),
            refused(
                "the log's size cannot be asked at the start (EIO)",
                "fstat */chat.db-wal EIO always"),
            refused(
                "the watching thread cannot be started (EAGAIN)",
                "pthread_create *libstdc++* EAGAIN always"),
            harmless("the log's size cannot be asked for once (EIO)", "fstat */chat.db-wal EIO 1"),
            harmless(
                "notifications cannot be read for a while (EIO)",
                "read anon_inode:inotify EIO 100"),
            harmless(
                "reading the notifications is interrupted (EINTR)",
                "read anon_inode:inotify EINTR 1"),
            harmless("the writer's lock cannot be asked for (EIO)", "asklock */chat.db-shm EIO 1"),
            harmless(
                "the shared index cannot be found by the watch (EACCES)",
                "stat */chat.db-shm EACCES 1"),
            harmless(
                "the shared index cannot be read by the watch (EIO)", "pread */chat.db-shm EIO 1"),
        },
    };
}

FaultGroup output()
{
    const auto lost = [](const std::string& error, const std::string& meaning) {
        return FaultRow{
            .name = "standard output cannot be written, " + meaning + " (" + error + ")",
            .rules = "write stdout " + error + " always",
            .losesOutput = true,
        };
    };
    return {
        "Standard output",
        {
            lost("EPIPE", "nobody reads"),
            lost("EIO", "its terminal is gone"),
            lost("ENOSPC", "its disk is full"),
            {.name = "standard output is full for a while (EAGAIN)",
             .rules = "write stdout EAGAIN 20"},
            {.name = "writing is interrupted (EINTR)", .rules = "write stdout EINTR 20"},
            {.name = "standard output takes a part at a time", .rules = "write stdout part always"},
        },
    };
}

constexpr const char* cannotRead = "Orlimo cannot read its preferences in ";
constexpr const char* cannotStore = "Orlimo cannot store preferences in ";

FaultGroup settings()
{
    // Where the first start can store nothing, its defaults hold in the process.
    const auto emptyAtFirst = [](const std::string& name, const std::string& rules) {
        return FaultRow{
            .name = name + ", and there is none yet",
            .rules = rules,
            .errors = cannotStore,
            .settings = Settings::none,
        };
    };
    const auto kept = [](const std::string& name,
                         const std::string& rules,
                         const std::string& errors = cannotStore) {
        return FaultRow{
            .name = name,
            .rules = rules,
            .errors = errors,
            .hasFiles = true,
            .settings = Settings::unchanged,
        };
    };
    // Two preferences are taken for absent; what is stored of them stays.
    const auto transientFault = [](const std::string& name, const std::string& rules) {
        return FaultRow{
            .name = name,
            .rules = rules,
            .errors = cannotRead,
            .hasFiles = true,
        };
    };
    return {
        "The settings file",
        {
            emptyAtFirst("the folder cannot be made (EACCES)", "mkdir */Orlimo EACCES always"),
            emptyAtFirst("the file cannot be made (EROFS)", "open */Orlimo.conf* EROFS always"),
            emptyAtFirst("the disk is full (ENOSPC)", "write */Orlimo.conf* ENOSPC always"),
            kept(
                "the file's successor cannot be made (EACCES)",
                "open */Orlimo.conf.* EACCES always"),
            kept("the disk is full (ENOSPC)", "write */Orlimo.conf* ENOSPC always"),
            kept(
                "the disk fills up meanwhile (`part`, then ENOSPC)",
                "write */Orlimo.conf.* part 1; write */Orlimo.conf.* ENOSPC always"),
            kept("the user's share is used up (EDQUOT)", "write */Orlimo.conf* EDQUOT always"),
            kept(
                "the successor cannot take its place (EACCES)",
                "rename */Orlimo.conf EACCES always"),
            kept(
                "the successor cannot take its place (EROFS)", "rename */Orlimo.conf EROFS always"),
            kept("the lock cannot be had (EACCES)", "open */Orlimo.conf.lock EACCES always"),
            kept("the file cannot be read (EIO)", "read */Orlimo.conf EIO always", cannotRead),
            kept(
                "the file cannot be opened (EMFILE)",
                "open */Orlimo.conf EMFILE always",
                cannotRead),
            transientFault(
                "the file cannot be read for a moment (EIO)", "read */Orlimo.conf EIO 4"),
            transientFault(
                "the file cannot be opened for a moment (EMFILE)", "open */Orlimo.conf EMFILE 4"),
            {
                .name = "the successor cannot be synced (EIO)",
                .rules = "fsync */Orlimo.conf* EIO always",
                .hasFiles = true,
            },
            {
                .name = "writing comes to a part at a time",
                .rules = "write */Orlimo.conf* part always",
                .hasFiles = true,
            },
            {
                .name = "the file cannot be read when a message comes (EIO)",
                .rules = "read */Orlimo.conf EIO always",
                .phase = Phase::whileRunning,
                .duringFault = unnoticed,
                .errors = cannotRead,
                .hasFiles = true,
            },
        },
    };
}

constexpr const char* cannotEnable = "Failed to enable launch at login: ";

FaultGroup loginItem()
{
    const auto refused = [](const std::string& name, const std::string& rules) {
        return FaultRow{
            .name = name,
            .rules = rules,
            .systemLog = cannotEnable,
            .loginItem = LoginItem::none,
        };
    };
    return {
        "The login item",
        {
            refused("the folder cannot be made (EACCES)", "mkdir */autostart EACCES always"),
            refused("the folder cannot be made (ENOSPC)", "mkdir */autostart ENOSPC always"),
            refused("the entry cannot be made (EROFS)", "open */autostart/* EROFS always"),
            refused("the disk is full (ENOSPC)", "write */autostart/* ENOSPC always"),
            refused(
                "the new entry cannot take its place (EACCES)",
                "rename */autostart/* EACCES always; link */autostart/* EACCES always"),
            {
                .name = "the new entry cannot be synced (EIO)",
                .rules = "fsync */autostart/* EIO always",
            },
            {
                .name = "the old entry cannot be removed (EACCES)",
                .rules = "unlink */app.orlimo.Orlimo.desktop EACCES always",
                .hasFiles = true,
            },
            {
                .name = "the old entry cannot be read (EIO)",
                .rules = "read */app.orlimo.Orlimo.desktop EIO always",
                .systemLog = cannotEnable,
                .hasFiles = true,
                .loginItem = LoginItem::unchanged,
            },
            {
                .name = "an entry is there, and the disk is full (ENOSPC)",
                .rules = "write */autostart/* ENOSPC always",
                .systemLog = cannotEnable,
                .hasFiles = true,
                .loginItem = LoginItem::none,
            },
        },
    };
}

FaultGroup bus()
{
    FaultGroup group{
        "The session bus",
        {
            {.name = "the bus cannot be reached (ECONNREFUSED)",
             .rules = "connect */bus/* ECONNREFUSED always"},
            {.name = "there is no socket for it (EMFILE)",
             .rules = "connect */bus/* EMFILE always"},
            {.name = "the bus cannot be written to (EPIPE)", .rules = "send */bus/* EPIPE always"},
            {.name = "the bus ends", .phase = Phase::whileRunning, .endsBus = true},
        },
    };
    for (FaultRow& row : group.rows) {
        row.hasBus = true;
    }
    return group;
}

FaultGroup display()
{
    const auto broken = [](const std::string& name, const std::string& rules) {
        FaultRow row = harmless(name, rules);
        row.errors = "The X11 connection broke";
        row.status = 1;
        return row;
    };
    return {
        "The display",
        {
            {
                .name = "the X server cannot be reached (ECONNREFUSED)",
                .rules = "connect *X11-unix* ECONNREFUSED always",
                .start = std::vector<std::string>{},
                .duringFault = unnoticed,
                .afterFault = unnoticed,
                .errors = "could not connect to display",
                .settings = Settings::none,
                .loginItem = LoginItem::none,
                .signal = SIGABRT,
            },
            broken("the X server hangs up (no more bytes)", "receive *X11-unix* nothing always"),
            broken(
                "the X server cannot be written to (EPIPE)",
                "send *X11-unix* EPIPE always; write *X11-unix* EPIPE always"),
        },
    };
}

FaultGroup compositor()
{
    const auto unreachable = [](const std::string& name, const std::string& rules) {
        FaultRow row = harmless(name, rules);
        row.errors = "the compositor's clipboard cannot be reached";
        return row;
    };
    FaultGroup group{
        "The compositor",
        {
            {.name = "the compositor cannot be reached (ECONNREFUSED)",
             .rules = "connect */compositor ECONNREFUSED always"},
            unreachable(
                "the compositor stops taking requests (EPIPE)", "send */compositor EPIPE always"),
            unreachable(
                "the compositor hangs up (no more bytes)", "receive */compositor nothing always"),
            harmless(
                "who pastes is gone before the text is written (EPIPE)", "write pipe:* EPIPE 1"),
            harmless(
                "the pipe to who pastes is full for a moment (EAGAIN)", "write pipe:* EAGAIN 3"),
            harmless("the pipe to who pastes takes a part at a time", "write pipe:* part always"),
        },
    };
    for (FaultRow& row : group.rows) {
        row.hasCompositor = true;
    }
    return group;
}

} // namespace

const std::vector<FaultGroup>& faultTable()
{
    static const std::vector<FaultGroup> table{
        store(), watch(), output(), settings(), loginItem(), bus(), display(), compositor()};
    return table;
}

} // namespace orlimo
