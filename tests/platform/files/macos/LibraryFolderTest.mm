#include "platform/files/LibraryFolder.h"

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

TEST(LibraryFolder, IsTheFirstFolderThatTheSystemNames)
{
    @autoreleasepool {
        NSArray<NSString*>* const paths =
            NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES);
        ASSERT_GT([paths count], 0U);
        EXPECT_EQ(libraryFolder(), std::filesystem::path([[paths firstObject] UTF8String]));
    }
}

} // namespace
} // namespace orlimo
