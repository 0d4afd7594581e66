#pragma once

#include <initializer_list>
#include <string_view>

namespace orlimo {

/// The kinds of data that the program puts on a pasteboard.
enum class PasteboardType {
    string, ///< plain text
};

/// A clipboard that other programs paste from. Main thread.
class Pasteboard
{
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// Announces the types that the pasteboard will hold. On macOS this takes the pasteboard over:
    /// its previous content is gone. On Linux nothing changes until `setString` is called: other
    /// programs see one change for each text, and no empty one.
    virtual void declareTypes(std::initializer_list<PasteboardType> types) = 0;

    /// Replaces the pasteboard's content with `text`, UTF-8 and possibly empty, as data of a type
    /// declared before. On Linux the text is marked as a secret, which clipboard managers do not
    /// store.
    virtual void setString(std::string_view text, PasteboardType type) = 0;
};

} // namespace orlimo
