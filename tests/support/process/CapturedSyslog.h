#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace orlimo {

/// Collects what this process hands to syslog(3) while the object lives, whatever the log mask; one
/// at a time. In a test program that uses it, nothing ever reaches the system's log.
class CapturedSyslog
{
public:
    struct Entry
    {
        int priority = 0; ///< with the facility
        std::string text; ///< on one line, as the recorder writes it

        bool operator==(const Entry&) const = default;
    };

    CapturedSyslog();
    CapturedSyslog(const CapturedSyslog&) = delete;
    CapturedSyslog& operator=(const CapturedSyslog&) = delete;
    ~CapturedSyslog();

    [[nodiscard]] static std::vector<Entry> entries();

private:
    std::FILE* file;
};

} // namespace orlimo
