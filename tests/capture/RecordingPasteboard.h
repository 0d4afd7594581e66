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
    void declareTypes(std::initializer_list<PasteboardType> types) override
    {
        std::string call = "declare";
        for (const PasteboardType type : types) {
            call += " " + nameOf(type);
        }
        calls.push_back(call);
        if (onDeclared) {
            onDeclared();
        }
    }

    void setString(std::string_view text, PasteboardType type) override
    {
        calls.push_back("set " + std::string(text) + " as " + nameOf(type));
    }

    /// Each call so far: "declare TYPE..." or "set TEXT as TYPE".
    std::vector<std::string> calls;

    /// Runs at the end of each declaration, if set.
    std::function<void()> onDeclared;

private:
    static std::string nameOf(PasteboardType type)
    {
        return type == PasteboardType::string ? "string" : "unknown type";
    }
};

} // namespace orlimo
