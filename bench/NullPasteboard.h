#pragma once

#include "platform/clipboard/Pasteboard.h"

namespace orlimo {

/// Takes what is copied and keeps nothing of it.
class NullPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> /*types*/) override {}
    void setString(std::string_view /*text*/, PasteboardType /*type*/) override {}
};

} // namespace orlimo
