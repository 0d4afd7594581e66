#pragma once

#include <functional>

#import <Foundation/Foundation.h>

/// Calls a function when it receives the action message, from a control or with a notification. The
/// function is not owned and must outlive it.
@interface OrlimoActionTarget : NSObject {
    const std::function<void()>* _action;
}
- (instancetype)initWithAction:(const std::function<void()>*)action;
/// Does not look at the sender or the current event, which need not be a mouse event; any other
/// raises an exception when queried for a button.
- (void)performAction:(id)sender;
@end
