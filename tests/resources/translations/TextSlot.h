#pragma once

#include <QFont>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// One text of the program, in English, and the room that there is for it.
struct TextSlot
{
    const char* context;
    const char* source;
    int fontPixelSize = 0;
    /// In points; 0 where the place grows with its text.
    int width = 0;
    int lines = 1;
    QFont::Weight weight = QFont::Normal;
};

/// Every text that is translated.
[[nodiscard]] const std::vector<TextSlot>& textSlots();

/// The same as context and English text.
[[nodiscard]] std::multiset<std::pair<std::string, std::string>> programTexts();

} // namespace orlimo
