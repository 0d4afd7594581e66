#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace orlimo {

/// Writes to the host's own log, under a subsystem and a category. Any thread.
class UnifiedLog
{
public:
    UnifiedLog() = default;
    UnifiedLog(const UnifiedLog&) = delete;
    UnifiedLog& operator=(const UnifiedLog&) = delete;
    virtual ~UnifiedLog() = default;

    /// One entry at error level: `format` with each "%s" replaced by the next of two arguments,
    /// which are UTF-8. Writes nothing where error-level logging is switched off.
    virtual void
    error(std::string_view format, std::string_view first, std::string_view second) = 0;

    /// `subsystem` is a reverse-DNS name.
    [[nodiscard]] static std::unique_ptr<UnifiedLog>
    create(std::string subsystem, std::string category);
};

} // namespace orlimo
