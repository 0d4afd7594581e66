#pragma once

#include "platform/clipboard/Pasteboard.h"

#include <functional>
#include <string>
#include <vector>

namespace orlimo {

/// A pasteboard that records its calls and nothing else.
class RecordingPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> types) override;
    void setString(std::string_view text, PasteboardType type) override;

    /// Each call so far: "declare TYPE..." or "set TEXT as TYPE".
    std::vector<std::string> calls;

    /// Runs at the end of each declaration, if set.
    std::function<void()> onDeclared;
};

} // namespace orlimo
