#include "bench/NullPasteboard.h"
#include "bench/SystemWatchServices.h"
#include "capture/Message.h"
#include "capture/Preferences.h"
#include "platform/files/LibraryFolder.h"

#include <QCoreApplication>
#include <sqlite3.h>

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include <malloc.h>

namespace orlimo {
namespace {

/// Has SQLite's memory come from the allocator as it is, with nothing of SQLite's in front of each
/// piece, so that SQLite and the allocator count the same.
void useSystemAllocatorForSqlite()
{
    constexpr int alignment = 8;
    sqlite3_mem_methods methods{
        .xMalloc = [](int size) { return std::malloc(static_cast<std::size_t>(size)); },
        .xFree = std::free,
        .xRealloc = [](void* piece,
                       int size) { return std::realloc(piece, static_cast<std::size_t>(size)); },
        .xSize = [](void* piece) { return static_cast<int>(::malloc_usable_size(piece)); },
        .xRoundup = [](int size) { return (size + alignment - 1) / alignment * alignment; },
        .xInit = [](void* /*data*/) { return SQLITE_OK; },
        .xShutdown = [](void* /*data*/) {},
        .pAppData = nullptr,
    };
    if (sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) != SQLITE_OK) {
        std::abort();
    }
}

/// What the process has allocated and not given back, in bytes.
struct AllocatedBytes
{
    std::int64_t byProgram = 0;
    std::int64_t bySqlite = 0;

    static AllocatedBytes now()
    {
        const auto heap = ::mallinfo2();
        sqlite3_int64 allocations = 0;
        sqlite3_int64 highWaterMark = 0;
        (void)sqlite3_status64(SQLITE_STATUS_MALLOC_COUNT, &allocations, &highWaterMark, 0);
        // What the allocator itself puts in front of each piece.
        constexpr std::int64_t header = sizeof(std::size_t);
        return {
            static_cast<std::int64_t>(heap.uordblks + heap.hblkhd),
            sqlite3_memory_used() + allocations * header,
        };
    }
};

int run(int checks)
{
    NullPasteboard pasteboard;
    CaptureServices services{
        .database = Database::shared(libraryFolder),
        .userDefaults = standardUserDefaults(),
        .pasteboard = pasteboard,
        .libraryFolder = libraryFolder,
        .makeFileMonitor =
            [](const auto& file) { return FileMonitor::create(file, systemWatchServices()); },
    };
    writePreferenceDefaults(services.userDefaults);
    const auto message = Message::create(std::move(services));
    if (!message->registFileObserver()) {
        return 1;
    }
    // What is made once is there after a few.
    constexpr int warmUpChecks = 20;
    for (int number = 0; number < warmUpChecks; ++number) {
        message->fileDidChange();
    }
    const AllocatedBytes before = AllocatedBytes::now();
    for (int number = 0; number < checks; ++number) {
        message->fileDidChange();
    }
    const AllocatedBytes after = AllocatedBytes::now();
    std::cerr << after.byProgram - before.byProgram << ' ' << after.bySqlite - before.bySqlite
              << std::endl;
    return message->verificationCode() == "No Code" ? 1 : 0;
}

} // namespace
} // namespace orlimo

/// Has the controller check the store of the home folder as often as the argument says, as it does
/// when the store has changed, and says on standard error by how many bytes that has made what is
/// allocated grow, and how many of them are SQLite's.
int main(int argc, char* argv[])
{
    int checks = 0;
    const char* const number = argc == 2 ? argv[1] : "";
    if (std::from_chars(number, number + std::strlen(number), checks).ec != std::errc()) {
        std::cerr << "Usage: orlimo-check-growth CHECKS\n";
        return 2;
    }
    orlimo::useSystemAllocatorForSqlite();
    const QCoreApplication application(argc, argv);
    return orlimo::run(checks);
}
