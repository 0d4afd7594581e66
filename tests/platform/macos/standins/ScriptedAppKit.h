#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>

namespace orlimo {

/// What the stand-ins for AppKit's classes answer, and what they have been asked. They are for
/// programs that do not link a real AppKit. Set anew by each test; main thread.
struct ScriptedAppKit
{
    /// A point counts upwards from the lower left corner of the first screen, which is the primary.
    std::vector<NSRect> screens;
    /// The one of the screens that has the focus.
    std::optional<std::size_t> mainScreen;

    /// The messages that the application object was sent, in their order, with their arguments.
    std::vector<std::string> applicationMessages;
    bool isActive = false;
    bool isHidden = false;
    bool hasKeyWindow = false;
    /// The options of each About panel.
    std::vector<std::map<std::string, std::string>> aboutPanels;
    /// What the application's delegate does when it is asked whether the program may end. It never
    /// lets the application object end the process.
    std::function<void()> whenAskedToTerminate = [] {};

    /// What windows were told last.
    std::optional<bool> windowHidesOnDeactivate;
    std::optional<NSWindowCollectionBehavior> windowBehavior;
    /// How often a window was brought to the front of all.
    int windowsOrderedFront = 0;

    /// The items in the menu bar. Not owned: they take themselves out at their end.
    std::vector<NSStatusItem*> statusItems;
    /// Where the window of an item's button is on the screens; none while the menu bar has not
    /// placed it.
    std::optional<NSRect> statusItemWindow;
    bool statusItemsAreVisible = true;

    /// The size in points of each symbol beside text of one point.
    std::map<std::string, NSSize> symbols{
        {"slider.horizontal.2.square", {1.3, 1.1}},
        {"ellipsis.bubble.fill", {1.3, 1.1}},
        {"hand.raised.fill", {1.3, 1.1}},
    };

    std::vector<std::string> openedAddresses;
    bool addressesCanBeOpened = true;
};

[[nodiscard]] ScriptedAppKit& scriptedAppKit();

} // namespace orlimo
