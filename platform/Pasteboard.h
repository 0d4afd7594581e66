#pragma once

#include <initializer_list>
#include <string_view>

namespace orlimo {

/// The kinds of data that the program puts on a pasteboard.
enum class PasteboardType {
    string, ///< plain text
};

/// A place from which other programs paste. Main thread.
class Pasteboard
{
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// Takes the pasteboard over: whatever it held is gone, and `types` are what it will offer.
    virtual void declareTypes(std::initializer_list<PasteboardType> types) = 0;

    /// Puts `text`, UTF-8, on the pasteboard as data of a type declared before.
    virtual void setString(std::string_view text, PasteboardType type) = 0;
};

/// The pasteboard that the user's paste command reads. Lives to the end of the process; the first
/// call must come after the application object was built.
[[nodiscard]] Pasteboard& generalPasteboard();

} // namespace orlimo
