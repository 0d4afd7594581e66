#include "platform/menubar/macos/StatusItem.h"

#include "platform/ApplicationIdentity.h"
#include "platform/desktop/macos/ScreenGeometry.h"
#include "platform/menubar/macos/ActionTarget.h"
#include "platform/menubar/macos/MenuBarImage.h"
#include "platform/process/macos/StringConversion.h"

#include <utility>

namespace orlimo {

StatusItem::StatusItem(const QIcon& label, std::function<void()> pressHandler)
    : onPress(std::move(pressHandler))
{
    @autoreleasepool {
        target = Retained<NSObject*>::adopt([[OrlimoActionTarget alloc] initWithAction:&onPress]);
        item = Retained<NSStatusItem*>::retain(
            [[NSStatusBar systemStatusBar] statusItemWithLength:NSSquareStatusItemLength]);
        NSString* const name = toNSString(identity::applicationName);
        NSStatusBarButton* const button = [item.get() button];
        [button setImage:menuBarImage(label).get()];
        [button setToolTip:name];
        [button setAccessibilityLabel:name];
        [button setTarget:target.get()];
        [button setAction:@selector(performAction:)];
        // On the press rather than the release, as with the system's own items: a window that loses
        // the focus because of it is notified at the same time, however long the button is held.
        [button sendActionOn:NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown];
    }
}

StatusItem::~StatusItem()
{
    @autoreleasepool {
        [[item.get() button] setTarget:nil];
        [[NSStatusBar systemStatusBar] removeStatusItem:item.get()];
    }
}

std::optional<QRect> StatusItem::geometry() const
{
    @autoreleasepool {
        NSStatusBarButton* const button = [item.get() button];
        NSWindow* const window = [button window];
        if (window == nil) {
            return std::nullopt;
        }
        const NSRect inWindow = [button convertRect:[button bounds] toView:nil];
        const QRect iconRect = toQtGeometry([window convertRectToScreen:inWindow]);
        return iconRect.isEmpty() ? std::nullopt : std::optional(iconRect);
    }
}

bool StatusItem::isVisible() const
{
    @autoreleasepool {
        return [item.get() isVisible];
    }
}

void StatusItem::highlight(bool isHighlighted)
{
    @autoreleasepool {
        [[item.get() button] highlight:isHighlighted ? YES : NO];
    }
}

} // namespace orlimo
