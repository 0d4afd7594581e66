#pragma once

#include <string>
#include <vector>

namespace orlimo {

/// Takes the place of the system's unified log as long as it lives, and keeps what is written. One
/// at a time; without one nothing is kept. Any thread may write, the main thread reads.
class RecordedUnifiedLog
{
public:
    struct Entry
    {
        std::string subsystem;
        std::string category;
        int type = 0;
        /// As it stands in the program: what it does not call public is private.
        std::string format;
        std::vector<std::string> arguments;

        bool operator==(const Entry&) const = default;
    };

    RecordedUnifiedLog();
    RecordedUnifiedLog(const RecordedUnifiedLog&) = delete;
    RecordedUnifiedLog& operator=(const RecordedUnifiedLog&) = delete;
    ~RecordedUnifiedLog();

    /// Switches entries at error level off.
    static void disableErrors();

    [[nodiscard]] static std::vector<Entry> entries();

    /// How many logs were made and not released yet.
    [[nodiscard]] static int logsInUse();
};

} // namespace orlimo
