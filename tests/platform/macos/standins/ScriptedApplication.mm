// The application object: notes what it is sent.

#include "tests/platform/macos/standins/ScriptedAppKit.h"

#import <AppKit/AppKit.h>

using orlimo::scriptedAppKit;

NSString* NSApplicationWillFinishLaunchingNotification = @"NSApplicationWillFinishLaunching";
NSString* NSApplicationDidFinishLaunchingNotification = @"NSApplicationDidFinishLaunching";
NSString* NSApplicationWillBecomeActiveNotification = @"NSApplicationWillBecomeActive";

namespace {

void note(const std::string& message)
{
    scriptedAppKit().applicationMessages.push_back(message);
}

std::string yesOrNo(BOOL flag)
{
    return flag ? " YES" : " NO";
}

} // namespace

NSApplication* NSApp = nil;

@implementation NSApplication

+ (void)load
{
    NSApp = [[NSApplication alloc] init];
}

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy
{
    note("setActivationPolicy: " + std::to_string(activationPolicy));
    return YES;
}

- (BOOL)isActive
{
    return scriptedAppKit().isActive;
}

- (BOOL)isHidden
{
    return scriptedAppKit().isHidden;
}

- (NSWindow*)keyWindow
{
    return scriptedAppKit().hasKeyWindow ? [[[NSWindow alloc] init] autorelease] : nil;
}

- (void)hide:(id)sender
{
    note("hide:");
    scriptedAppKit().isHidden = true;
}

- (void)unhideWithoutActivation
{
    note("unhideWithoutActivation");
    scriptedAppKit().isHidden = false;
}

- (void)activateIgnoringOtherApps:(BOOL)flag
{
    note("activateIgnoringOtherApps:" + yesOrNo(flag));
    scriptedAppKit().isActive = true;
}

- (void)orderFrontStandardAboutPanelWithOptions:(NSDictionary*)dictionary
{
    note("orderFrontStandardAboutPanelWithOptions:");
    std::map<std::string, std::string> options;
    for (NSString* key in dictionary) {
        options[[key UTF8String]] = [[dictionary objectForKey:key] UTF8String];
    }
    scriptedAppKit().aboutPanels.push_back(options);
}

- (void)terminate:(id)sender
{
    note("terminate:");
    scriptedAppKit().whenAskedToTerminate();
}

@end
