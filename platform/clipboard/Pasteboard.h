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

    /// Announces `types` as what the pasteboard will hold. On macOS this takes the pasteboard over:
    /// whatever it held is gone. On Linux nothing changes before `setString`, and nothing at all
    /// where that does not follow: other programs see one change for each text, and no empty one.
    virtual void declareTypes(std::initializer_list<PasteboardType> types) = 0;

    /// Puts `text`, UTF-8, which may be empty, on the pasteboard as data of a type declared before,
    /// in the place of whatever it held. On Linux the text is marked as a secret, which clipboard
    /// managers do not keep.
    virtual void setString(std::string_view text, PasteboardType type) = 0;
};

} // namespace orlimo
