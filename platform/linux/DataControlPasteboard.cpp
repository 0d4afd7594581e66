#include "platform/linux/DataControlPasteboard.h"

#include <iostream>
#include <string>
#include <utility>

namespace orlimo {

void DataControlPasteboard::declareTypes(std::initializer_list<PasteboardType> /*types*/) {}

void DataControlPasteboard::setString(std::string_view text, PasteboardType type)
{
    if (!take(text)) {
        standIn.setString(text, type);
    }
}

bool DataControlPasteboard::take(std::string_view text)
{
    const bool isTaken = clipboard.setText(std::string(text));
    const bool wasOutOfReach = std::exchange(isOutOfReach, !isTaken);
    if (!isTaken && !wasOutOfReach) {
        std::cerr << "orlimo: the compositor's clipboard cannot be reached\n" << std::flush;
    }
    return isTaken;
}

} // namespace orlimo
