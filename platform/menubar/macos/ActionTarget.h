#pragma once

#include <functional>

#import <Foundation/Foundation.h>

/// Calls a function when the system sends it the action, from a control or with a notification. The
/// function is not owned and must outlive it.
@interface OrlimoActionTarget : NSObject {
    const std::function<void()>* _action;
}
- (instancetype)initWithAction:(const std::function<void()>*)action;
/// The sender, and the current event, are not asked for anything: that need not be one of the
/// mouse, and one that is not raises an exception when it is asked for a button.
- (void)performAction:(id)sender;
@end
