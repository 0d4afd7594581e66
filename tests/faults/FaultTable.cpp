#include "tests/faults/FaultTable.h"

#include <csignal>

namespace orlimo {

namespace {

using Phase = FaultRow::Phase;
using Settings = FaultRow::Settings;
using LoginItem = FaultRow::LoginItem;

const Reaction copied{};
const Reaction unheard{.copies = false};

/// The newest messages are asked for, and only `line` comes of it.
Reaction refusal(const std::string& line)
{
    return {.copies = false, .lines = {{"ready to access disk", line}}};
}

/// The newest messages are asked for, and none is found.
const Reaction nothingFound{.copies = false, .lines = {{"ready to access disk"}}};

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

FaultGroup store()
{
    return {
        "The message store",
        {
            {
                .name = "the store cannot be opened (EACCES)",
                .rules = "open */chat.db EACCES always",
                .start = closedStoreStart,
                .duringFault = withoutStore,
                .afterFault = withoutStore,
            },
            {
                .name = "the store cannot be opened (EMFILE)",
                .rules = "open */chat.db EMFILE always",
                .start = closedStoreStart,
                .duringFault = withoutStore,
                .afterFault = withoutStore,
            },
            {
                .name = "the shared index cannot be opened by the reader (EACCES)",
                .rules = "open */chat.db-shm EACCES always",
                .duringFault =
                    refusal("error preparing fetch limit : v1unable to open database file"),
            },
            {
                .name = "the log cannot be opened by the reader (EMFILE)",
                .rules = "open */chat.db-wal EMFILE always",
                .phase = Phase::whileRunning,
                .duringFault =
                    refusal("error preparing fetch limit : v1unable to open database file"),
            },
            {
                .name = "the size of the store cannot be asked (EIO)",
                .rules = "fstat */chat.db EIO always",
                .phase = Phase::whileRunning,
                .duringFault = refusal("error preparing fetch limit : v1disk I/O error"),
            },
            {
                .name = "the size of the shared index cannot be asked (EIO)",
                .rules = "fstat */chat.db-shm EIO always",
                .phase = Phase::whileRunning,
                .duringFault = refusal("error preparing fetch limit : v1disk I/O error"),
            },
            {
                .name = "the store cannot be read (EIO)",
                .rules = "pread */chat.db EIO always",
                .phase = Phase::whileRunning,
                .duringFault = refusal("error preparing fetch limit : v1disk I/O error"),
                .hasEmptyLog = true,
            },
            {
                .name = "the log cannot be read (EIO)",
                .rules = "pread */chat.db-wal EIO always",
                .phase = Phase::whileRunning,
                .duringFault = refusal("error preparing fetch limit : v1disk I/O error"),
            },
            {
                .name = "reading is interrupted (EINTR)",
                .rules = "pread */chat.db* EINTR 3",
                .phase = Phase::whileRunning,
            },
            {
                .name = "reading brings a part at a time",
                .rules = "pread */chat.db-wal part always",
                .phase = Phase::whileRunning,
            },
            {
                .name = "the shared index cannot be mapped (ENOMEM)",
                .rules = "mmap */chat.db-shm ENOMEM always",
                .phase = Phase::whileRunning,
                .duringFault = refusal("error preparing fetch limit : v1disk I/O error"),
            },
            {
                .name = "the store cannot be locked (EIO)",
                .rules = "lock */chat.db EIO always",
                .phase = Phase::whileRunning,
                .duringFault = refusal("error preparing fetch limit : v1disk I/O error"),
            },
            {
                .name = "the shared index is locked for a moment (EAGAIN)",
                .rules = "lock */chat.db-shm EAGAIN 5",
                .phase = Phase::whileRunning,
            },
            {
                .name = "locks run out (ENOLCK)",
                .rules = "lock */chat.db* ENOLCK always",
                .phase = Phase::whileRunning,
                .duringFault = refusal("error preparing fetch limit : v1database is locked"),
            },
        },
    };
}

FaultGroup watch()
{
    return {
        "The watch on the log",
        {
            {
                .name = "the log cannot be opened for watching (EACCES)",
                .rules = "open */chat.db-wal EACCES always",
                .start = refusedStart,
                .duringFault = unheard,
                .afterFault = unheard,
            },
            {
                .name = "the log cannot be opened for watching (EMFILE)",
                .rules = "open */chat.db-wal EMFILE always",
                .start = refusedStart,
                .duringFault = unheard,
                .afterFault = unheard,
            },
            {
                .name = "there is no watch left (`inotify_init1`, EMFILE)",
                .rules = "inotify_init inotify EMFILE always",
                .start = refusedStart,
                .duringFault = unheard,
                .afterFault = unheard,
            },
            {
                .name = "there is no watch left (`inotify_add_watch`, ENOSPC)",
                .rules = "inotify_add_watch */chat.db-wal ENOSPC always",
                .start = refusedStart,
                .duringFault = unheard,
                .afterFault = unheard,
            },
            {
                .name = "the log's size cannot be asked at the start (EIO)",
                .rules = "fstat */chat.db-wal EIO always",
                .start = refusedStart,
                .duringFault = unheard,
                .afterFault = unheard,
            },
            {
                .name = "the watching thread cannot be started (EAGAIN)",
                .rules = "pthread_create *libstdc++* EAGAIN always",
                .start = refusedStart,
                .duringFault = unheard,
                .afterFault = unheard,
            },
            {
                .name = "the log's size cannot be asked for once (EIO)",
                .rules = "fstat */chat.db-wal EIO 1",
                .phase = Phase::whileRunning,
            },
            {
                .name = "notifications cannot be read for a while (EIO)",
                .rules = "read anon_inode:inotify EIO 100",
                .phase = Phase::whileRunning,
            },
            {
                .name = "reading the notifications is interrupted (EINTR)",
                .rules = "read anon_inode:inotify EINTR 1",
                .phase = Phase::whileRunning,
            },
            {
                .name = "the writer's lock cannot be asked for (EIO)",
                .rules = "asklock */chat.db-shm EIO 1",
                .phase = Phase::whileRunning,
            },
            {
                .name = "the shared index cannot be found by the watch (EACCES)",
                .rules = "stat */chat.db-shm EACCES 1",
                .phase = Phase::whileRunning,
            },
            {
                .name = "the shared index cannot be read by the watch (EIO)",
                .rules = "pread */chat.db-shm EIO 1",
                .phase = Phase::whileRunning,
            },
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
            {
                .name = "standard output is full for a while (EAGAIN)",
                .rules = "write stdout EAGAIN 20",
            },
            {
                .name = "writing is interrupted (EINTR)",
                .rules = "write stdout EINTR 20",
            },
            {
                .name = "standard output takes a part at a time",
                .rules = "write stdout part always",
            },
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
    const auto kept = [](const std::string& name, const std::string& rules) {
        return FaultRow{
            .name = name,
            .rules = rules,
            .errors = cannotStore,
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
            {
                .name = "the file cannot be read (EIO)",
                .rules = "read */Orlimo.conf EIO always",
                .errors = cannotRead,
                .hasFiles = true,
                .settings = Settings::unchanged,
            },
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
                .duringFault = unheard,
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
    return {
        "The session bus",
        {
            {
                .name = "the bus cannot be reached (ECONNREFUSED)",
                .rules = "connect */bus/* ECONNREFUSED always",
                .hasBus = true,
            },
            {
                .name = "there is no socket for it (EMFILE)",
                .rules = "connect */bus/* EMFILE always",
                .hasBus = true,
            },
            {
                .name = "the bus cannot be written to (EPIPE)",
                .rules = "send */bus/* EPIPE always",
                .hasBus = true,
            },
            {
                .name = "the bus ends",
                .rules = "",
                .phase = Phase::whileRunning,
                .hasBus = true,
                .endsBus = true,
            },
        },
    };
}

FaultGroup display()
{
    return {
        "The display",
        {
            {
                .name = "the X server cannot be reached (ECONNREFUSED)",
                .rules = "connect *X11-unix* ECONNREFUSED always",
                .start = std::vector<std::string>{},
                .duringFault = unheard,
                .afterFault = unheard,
                .errors = "could not connect to display",
                .settings = Settings::none,
                .loginItem = LoginItem::none,
                .signal = SIGABRT,
            },
            {
                .name = "the X server hangs up (no more bytes)",
                .rules = "receive *X11-unix* nothing always",
                .phase = Phase::whileRunning,
                .errors = "The X11 connection broke",
                .status = 1,
            },
            {
                .name = "the X server cannot be written to (EPIPE)",
                .rules = "send *X11-unix* EPIPE always; write *X11-unix* EPIPE always",
                .phase = Phase::whileRunning,
                .errors = "The X11 connection broke",
                .status = 1,
            },
        },
    };
}

FaultGroup compositor()
{
    constexpr const char* outOfReach = "the compositor's clipboard cannot be reached";
    return {
        "The compositor",
        {
            {
                .name = "the compositor cannot be reached (ECONNREFUSED)",
                .rules = "connect */compositor ECONNREFUSED always",
                .hasCompositor = true,
            },
            {
                .name = "the compositor stops taking requests (EPIPE)",
                .rules = "send */compositor EPIPE always",
                .phase = Phase::whileRunning,
                .errors = outOfReach,
                .hasCompositor = true,
            },
            {
                .name = "the compositor hangs up (no more bytes)",
                .rules = "receive */compositor nothing always",
                .phase = Phase::whileRunning,
                .errors = outOfReach,
                .hasCompositor = true,
            },
            {
                .name = "who pastes is gone before the text is written (EPIPE)",
                .rules = "write pipe:* EPIPE 1",
                .phase = Phase::whileRunning,
                .hasCompositor = true,
            },
            {
                .name = "the pipe to who pastes is full for a moment (EAGAIN)",
                .rules = "write pipe:* EAGAIN 3",
                .phase = Phase::whileRunning,
                .hasCompositor = true,
            },
            {
                .name = "the pipe to who pastes takes a part at a time",
                .rules = "write pipe:* part always",
                .phase = Phase::whileRunning,
                .hasCompositor = true,
            },
        },
    };
}

} // namespace

const std::vector<FaultGroup>& faultTable()
{
    static const std::vector<FaultGroup> table{
        store(), watch(), output(), settings(), loginItem(), bus(), display(), compositor()};
    return table;
}

} // namespace orlimo
