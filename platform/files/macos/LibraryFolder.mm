#include "platform/files/LibraryFolder.h"

#import <Foundation/Foundation.h>

namespace orlimo {

std::optional<std::filesystem::path> libraryFolder()
{
    @autoreleasepool {
        NSArray<NSURL*>* const folders =
            [[NSFileManager defaultManager] URLsForDirectory:NSLibraryDirectory
                                                   inDomains:NSUserDomainMask];
        NSURL* const folder = [folders firstObject];
        return folder == nil
                   ? std::nullopt
                   : std::optional<std::filesystem::path>([folder fileSystemRepresentation]);
    }
}

} // namespace orlimo
