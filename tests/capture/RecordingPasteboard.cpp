#include "tests/capture/RecordingPasteboard.h"

namespace orlimo {

namespace {

std::string nameOf(PasteboardType type)
{
    return type == PasteboardType::string ? "string" : "unknown type";
}

} // namespace

void RecordingPasteboard::declareTypes(std::initializer_list<PasteboardType> types)
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

void RecordingPasteboard::setString(std::string_view text, PasteboardType type)
{
    calls.push_back("set " + std::string(text) + " as " + nameOf(type));
}

} // namespace orlimo
