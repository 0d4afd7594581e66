#include "platform/files/DirectoryListing.h"

#import <Foundation/Foundation.h>

namespace orlimo {

bool canListDirectory(const std::filesystem::path& folder)
{
    @autoreleasepool {
        NSFileManager* const manager = [NSFileManager defaultManager];
        NSString* const path = [manager stringWithFileSystemRepresentation:folder.c_str()
                                                                    length:folder.native().size()];
        return [path length] > 0 && [manager contentsOfDirectoryAtPath:path error:nullptr] != nil;
    }
}

} // namespace orlimo
