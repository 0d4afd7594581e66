#include "tests/resources/translations/TextSlot.h"

namespace orlimo {

const std::vector<TextSlot>& textSlots()
{
    static const std::vector<TextSlot> places{
        {"AboutPanel", "About %1"},
        {"AboutPanel", "Version %1"},
        {"LoginItemService", "Orlimo copies verification codes as soon as they arrive."},
        {"MenuBarExtra", "Open Orlimo"},
        {"MenuBarExtra", "Quit"},
        {"orlimo::HelperView", "Allow acess", 28, 320, 1, QFont::Bold},
        {"orlimo::HelperView",
         "Full Disk Access is required to read the verification code from Messages.",
         14,
         420,
         3},
        {"orlimo::HelperView",
         "open System Preferences > Security & Privacy > Full Disk Access and allow Orlimo in the "
         "list.",
         14,
         420,
         3},
        {"orlimo::HelperView", "Open System Setting", 15, 300},
        {"orlimo::PopupView", "Capture Options", 15, 230},
        {"orlimo::PopupView", "Auto Copy to Clipboard", 13, 190},
        {"orlimo::PopupView", "Include 4 digit code", 13, 190},
        {"orlimo::PopupView", "Launch at login", 13, 190},
        {"orlimo::PopupView", "Latest Code", 15, 230},
        {"orlimo::PopupView", "Copy", 15, 140},
        {"orlimo::StatusMenuView", "About", 11, 220},
        {"orlimo::StatusMenuView", "Open website", 11, 220},
        {"orlimo::StatusMenuView", "Quit", 11, 220},
    };
    return places;
}

std::multiset<std::pair<std::string, std::string>> programTexts()
{
    std::multiset<std::pair<std::string, std::string>> texts;
    for (const TextSlot& place : textSlots()) {
        texts.emplace(place.context, place.source);
    }
    return texts;
}

} // namespace orlimo
