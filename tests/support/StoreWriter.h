#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

struct sqlite3;

namespace orlimo {

/// Writes a small message store, as the program that receives messages would: keeps its connection
/// open for as long as the object lives. Every fault is a test failure.
class StoreWriter
{
public:
    enum class Journal {
        writeAheadLog, ///< one that only ever grows: nothing is moved out of the log into the store
        rollback,      ///< a store without a log
    };

    /// One row of the `message` table. Texts and bodies are stored byte for byte.
    struct Row
    {
        std::optional<std::int64_t> rowid = {};
        std::optional<std::string> text = {};
        std::optional<std::string> attributedBody = {};
        /// Later than that of the row before where absent.
        std::optional<std::int64_t> date = {};
    };

    /// Creates "Messages/chat.db" in `libraryFolder`, with an empty `message` table and the index
    /// on its dates.
    explicit StoreWriter(
        const std::filesystem::path& libraryFolder, Journal journal = Journal::writeAheadLog);
    StoreWriter(const StoreWriter&) = delete;
    StoreWriter& operator=(const StoreWriter&) = delete;
    ~StoreWriter();

    void append(const Row& row);
    void appendText(const std::string& text) { append({.text = text}); }
    void appendBody(const std::string& bytes) { append({.attributedBody = bytes}); }

    /// Runs any statements.
    void run(const std::string& sql);

private:
    sqlite3* connection = nullptr;
    std::int64_t lastDate = 700'000'000'000'000'000;
};

} // namespace orlimo
