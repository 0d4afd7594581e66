#include "platform/desktop/macos/AppKitLifecycle.h"

#include "platform/desktop/ApplicationDelegate.h"

#include <utility>

#import <AppKit/AppKit.h>

namespace orlimo {

AppKitLifecycle::AppKitLifecycle(
    ApplicationDelegate& delegate, std::function<void()> launchingDidFinish)
    : willFinishLaunching(
          NSApplicationWillFinishLaunchingNotification,
          [&delegate] { delegate.applicationWillFinishLaunching(); })
    , didFinishLaunching(
          NSApplicationDidFinishLaunchingNotification,
          [&delegate, didFinish = std::move(launchingDidFinish)] {
              delegate.applicationDidFinishLaunching();
              didFinish();
          })
    , willBecomeActive(NSApplicationWillBecomeActiveNotification, [&delegate] {
        delegate.applicationWillBecomeActive();
    })
{}

} // namespace orlimo
