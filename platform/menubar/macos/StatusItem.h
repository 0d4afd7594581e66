#pragma once

#include "platform/process/macos/Retained.h"

#include <QIcon>
#include <QRect>

#include <functional>
#include <optional>

#import <AppKit/AppKit.h>

namespace orlimo {

/// The program's place in the system's menu bar, taken with the object and given up with it. Main
/// thread, in a program whose event loop is the system's.
class StatusItem
{
public:
    /// Calls `pressHandler` each time the item is pressed, with whichever button of the mouse, or
    /// by an aid to accessibility.
    StatusItem(const QIcon& label, std::function<void()> pressHandler);
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    ~StatusItem();

    /// Where the item is, on the screen on which it was last pressed; none while the menu bar has
    /// not placed it.
    [[nodiscard]] std::optional<QRect> geometry() const;

    /// Whether the item is in the menu bar; not so when the user has taken it out.
    [[nodiscard]] bool isVisible() const;

    /// Shows the item as one whose window is open, or not.
    void highlight(bool isHighlighted);

private:
    std::function<void()> onPress;
    Retained<NSObject*> target;
    Retained<NSStatusItem*> item;
};

} // namespace orlimo
