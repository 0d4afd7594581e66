#pragma once

#include "platform/clipboard/Pasteboard.h"

#include <functional>
#include <string>
#include <vector>

namespace orlimo {

/// A pasteboard that keeps nothing but the order in which it is used.
class RecordingPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> types) override;
    void setString(std::string_view text, PasteboardType type) override;

    /// Each call so far: "declare TYPE..." or "set TEXT as TYPE".
    std::vector<std::string> calls;

    /// Runs at the end of each declaration, where set.
    std::function<void()> onDeclared;
};

} // namespace orlimo
