#pragma once

#include "sample/SampleMessage.h"
#include "sample/Statement.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orlimo::sample {

/// When the writer waits for its commits to reach the disk, in SQLite's terms.
enum class Synchronous {
    off,
    normal,
    full,
};

/// A message store of the real one's shape, written the way the Messages application writes it: in
/// WAL mode, over one connection that stays open.
///
/// The log is checkpointed only by truncateLog(), so that it grows with every commit, and it
/// outlives the connection. Every failure is thrown as std::runtime_error with SQLite's message.
/// One thread.
class SampleStore
{
public:
    /// Opens the store at `file`, creating it if there is none; its log exists from then on. The
    /// folder must exist. A store that was not created here is refused: it may be a real one.
    explicit SampleStore(
        const std::filesystem::path& file, Synchronous synchronous = Synchronous::full);

    /// Stores a message as the newest one and returns its row. Committed on return, unless a
    /// transaction is open.
    std::int64_t append(const SampleMessage& message);

    /// Stores `number` messages without a code, all dated in the past: most of them as bodies, a
    /// few in the text column, in both, or as a picture.
    void fill(std::int64_t number);

    void begin();
    void commit();
    void rollback();

    /// Writes the open transaction's pages to the log while it stays open, as SQLite does by itself
    /// when a transaction outgrows its memory. The writer's lock is held from then on.
    void spill();

    /// Moves everything from the log into the store and truncates the log to zero. Throws while a
    /// reader blocks that.
    void truncateLog();

    /// How long the log is, in bytes.
    [[nodiscard]] std::uintmax_t logSize() const;

    /// Runs any statements; what they return is dropped.
    void run(const std::string& statements);

    [[nodiscard]] bool isInTransaction() const;

private:
    struct Closer
    {
        void operator()(sqlite3* opened) const;
    };

    void open(const std::filesystem::path& file);
    void makeTables();
    std::int64_t insert(const SampleMessage& message, std::int64_t date);
    [[nodiscard]] std::int64_t nextDate();
    std::int64_t integer(const char* sql);
    Statement& prepared(std::optional<Statement>& statement, const char* sql);

    std::filesystem::path log;
    std::unique_ptr<sqlite3, Closer> connection;
    // Each is compiled at its first use, as a table may be missing.
    std::optional<Statement> newestDate;
    std::optional<Statement> messageInsertion;
    std::optional<Statement> joinInsertion;
};

} // namespace orlimo::sample
