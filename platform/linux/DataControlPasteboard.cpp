#include "platform/linux/DataControlPasteboard.h"

#include <iostream>
#include <string>
#include <utility>

namespace orlimo {

void DataControlPasteboard::declareTypes(std::initializer_list<PasteboardType> types)
{
    // Whatever others had put there is gone from now on, the text follows with the next call.
    if (!take({})) {
        standIn.declareTypes(types);
    }
}

void DataControlPasteboard::setString(std::string_view text, PasteboardType type)
{
    // A compositor that has just not answered is not waited for a second time.
    if (isOutOfReach || !take(text)) {
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
