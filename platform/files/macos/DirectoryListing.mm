#include "platform/files/DirectoryListing.h"

#include "platform/process/macos/StringConversion.h"

#import <Foundation/Foundation.h>

namespace orlimo {

std::optional<std::vector<std::string>> contentsOfDirectory(const std::filesystem::path& folder)
{
    @autoreleasepool {
        NSFileManager* const manager = [NSFileManager defaultManager];
        NSString* const path = [manager stringWithFileSystemRepresentation:folder.c_str()
                                                                    length:folder.native().size()];
        if ([path length] == 0) {
            return std::nullopt;
        }
        NSArray<NSString*>* const contents = [manager contentsOfDirectoryAtPath:path error:nullptr];
        if (contents == nil) {
            return std::nullopt;
        }
        std::vector<std::string> names;
        names.reserve([contents count]);
        for (NSString* name in contents) {
            // As the folder has it: the file system's representation of a name is decomposed.
            names.push_back(toUtf8(name));
        }
        return names;
    }
}

} // namespace orlimo
