#import "platform/menubar/macos/ActionTarget.h"

@implementation OrlimoActionTarget

- (instancetype)initWithAction:(const std::function<void()>*)action
{
    self = [super init];
    if (self != nil) {
        _action = action;
    }
    return self;
}

- (void)performAction:(id)sender
{
    static_cast<void>(sender);
    (*_action)();
}

@end
