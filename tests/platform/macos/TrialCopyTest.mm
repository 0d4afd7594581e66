#include "platform/LoginItemService.h"

#include <gtest/gtest.h>

#include <cerrno>

#import <Foundation/Foundation.h>
#import <objc/runtime.h>

namespace orlimo {
namespace {

/// What the property list of a copy for a trial says.
id trialProperty(id /*bundle*/, SEL /*command*/, NSString* key)
{
    return [key isEqualToString:@"OrlimoTrialCopy"] ? [NSNumber numberWithBool:YES] : nil;
}

TEST(TrialCopy, IsNeverRegisteredAsALoginItem)
{
    const Method lookUp =
        class_getInstanceMethod([NSBundle class], @selector(objectForInfoDictionaryKey:));
    ASSERT_FALSE(mainAppService().registerItem().has_value());
    const IMP original = method_setImplementation(lookUp, reinterpret_cast<IMP>(trialProperty));
    const auto refusal = mainAppService().registerItem();
    method_setImplementation(lookUp, original);
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code, EPERM);
}

} // namespace
} // namespace orlimo
