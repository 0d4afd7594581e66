#include "bench/FilledStore.h"

#include "sample/ArchivedBody.h"

#include <string>
#include <string_view>

namespace orlimo {

namespace {

constexpr std::string_view messageText = "Lunch at noon? I will be at the station.";

} // namespace

FilledStore::FilledStore(std::int64_t number)
    : store(createFile(), sample::Synchronous::off)
{
    fill(number);
    // The log is there from its first commit on.
    deliver(TextLocation::text);
}

std::filesystem::path FilledStore::createFile() const
{
    const auto folder = library.path() / "Messages";
    std::filesystem::create_directories(folder);
    return folder / "chat.db";
}

void FilledStore::fill(std::int64_t number)
{
    // Neither journal nor log while the store is made. Identifiers that ascend, unlike the real
    // ones, keep each index growing at its end.
    store.truncateLog();
    store.run("PRAGMA journal_mode = OFF");
    store.begin();
    store.run(
        "WITH RECURSIVE counted(number) AS "
        "(SELECT 1 UNION ALL SELECT number + 1 FROM counted WHERE number < " +
        std::to_string(number) +
        ") INSERT INTO message (guid, text, handle_id, service, account, date, is_delivered, "
        "is_finished) SELECT printf('%032X', number), 'On my way', 1, 'SMS', 'P:+15550199', "
        "number * 1000000000, 1, 1 FROM counted");
    store.run("INSERT INTO chat_message_join (chat_id, message_id, message_date) "
              "SELECT 1, ROWID, date FROM message");
    store.commit();
    store.run("PRAGMA journal_mode = WAL");
    // Moved into the store now and then, so that the log does not grow with the number of checks.
    store.run("PRAGMA wal_autocheckpoint = 1000");
}

void FilledStore::deliver(TextLocation location)
{
    if (location == TextLocation::text) {
        store.append({.text = std::string(messageText)});
    } else {
        store.append(
            {.attributedBody =
                 sample::archivedBody(messageText, sample::ArchivedString::mutableString)});
    }
}

} // namespace orlimo
