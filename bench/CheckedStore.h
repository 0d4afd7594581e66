#pragma once

#include "bench/FilledStore.h"
#include "bench/NullPasteboard.h"
#include "capture/Message.h"

#include <cstdint>
#include <memory>
#include <string>

struct sqlite3;

namespace orlimo {

/// A store of a given size with the program's own reader and controller at work on it. Its watch
/// hears nothing: checks are asked for. Main thread; needs the application object.
class CheckedStore
{
public:
    /// How many of the newest messages a check looks at.
    static constexpr int maxCheckedMessages = 10;

    /// With `number` messages to begin with. Failures are thrown as std::runtime_error.
    explicit CheckedStore(std::int64_t number);

    /// See FilledStore.
    void deliver(TextLocation location) { store.deliver(location); }

    /// One check of the newest messages. They hold no code, so that each of them is looked at.
    void check() { (void)message->checkMessages(); }

    /// The part of a check that depends on the store: the newest messages are read.
    void fetch() { (void)reader.fetchMessages(maxCheckedMessages); }

    /// How SQLite goes about the last query, its steps separated by a comma.
    [[nodiscard]] std::string queryPlan() const;

private:
    [[nodiscard]] Database& openReader();

    FilledStore store;
    // The reader's own, to ask about its statements.
    sqlite3* connection = nullptr;
    // Lives as long as the process, as the program's own.
    Database& reader;
    NullPasteboard pasteboard;
    std::shared_ptr<Message> message;
};

} // namespace orlimo
