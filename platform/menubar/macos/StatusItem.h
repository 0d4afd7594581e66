#pragma once

#include "platform/process/macos/Retained.h"

#include <QIcon>
#include <QRect>

#include <functional>
#include <optional>

#import <AppKit/AppKit.h>

namespace orlimo {

/// The program's item in the system's menu bar, for the lifetime of the object. Main thread, in a
/// program whose event loop is the system's.
class StatusItem
{
public:
    /// Calls `pressHandler` each time the item is pressed, with any mouse button or through
    /// accessibility.
    StatusItem(const QIcon& label, std::function<void()> pressHandler);
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    ~StatusItem();

    /// The item's rectangle on the screen on which it was last pressed; none until the menu bar has
    /// positioned it.
    [[nodiscard]] std::optional<QRect> geometry() const;

    /// Whether the item is in the menu bar; false if the user has removed it.
    [[nodiscard]] bool isVisible() const;

    /// Shows the item highlighted, as while its window is open, or not.
    void highlight(bool isHighlighted);

private:
    std::function<void()> onPress;
    Retained<NSObject*> target;
    Retained<NSStatusItem*> item;
};

} // namespace orlimo
