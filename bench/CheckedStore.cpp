#include "bench/CheckedStore.h"

#include "bench/IdleVnodeSource.h"
#include "bench/SystemWatchServices.h"
#include "tests/capture/stores/OpenedConnections.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"

#include <sqlite3.h>

#include <stdexcept>

namespace orlimo {

namespace {

std::shared_ptr<FileMonitor> makeInertMonitor(const std::filesystem::path& file)
{
    WatchServices services = systemWatchServices();
    services.makeVnodeSource = [](int, VnodeEvents, Queue&) {
        return std::make_unique<IdleVnodeSource>();
    };
    return FileMonitor::create(file, services);
}

int appendStep(void* plan, int columns, char** values, char** /*names*/)
{
    auto& text = *static_cast<std::string*>(plan);
    text.append(text.empty() ? "" : ", ").append(values[columns - 1]);
    return 0;
}

} // namespace

CheckedStore::CheckedStore(std::int64_t number)
    : store(number)
    , reader(openReader())
    , message(Message::create({
          .database = reader,
          .userDefaults = standardUserDefaults(),
          .pasteboard = pasteboard,
          .libraryFolder = [folder = store.libraryFolder()] { return folder; },
          .makeFileMonitor = makeInertMonitor,
      }))
{
    if (!message->registFileObserver()) {
        throw std::runtime_error("the store cannot be watched");
    }
}

Database& CheckedStore::openReader()
{
    const OpenedConnections opened;
    Database& database = processLifetimeDatabase(store.libraryFolder());
    connection = opened.only();
    return database;
}

std::string CheckedStore::queryPlan() const
{
    const auto statements = statementsOn(connection);
    if (statements.empty()) {
        throw std::runtime_error("nothing was asked of the store");
    }
    std::string plan;
    const std::string explainQuery = "EXPLAIN QUERY PLAN " + statements.back();
    if (sqlite3_exec(connection, explainQuery.c_str(), appendStep, &plan, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(connection));
    }
    return plan;
}

} // namespace orlimo
