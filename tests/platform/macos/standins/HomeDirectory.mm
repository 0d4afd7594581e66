// Where the user's home is. GNUstep asks the user database alone and would keep its preferences in
// the home of whoever runs the tests, and its servers' addresses where every program of that user
// finds them; put before its own, these functions lead all of it to where the tests have led
// everything else.

#include <cstdlib>

#import <Foundation/Foundation.h>
#include <unistd.h>

NSString* NSHomeDirectoryForUser(NSString* /*name*/)
{
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): set before main
    return home == nullptr || *home == '\0' ? nil : [NSString stringWithUTF8String:home];
}

NSString* NSTemporaryDirectory()
{
    // GNUstep's own programs keep their addresses in the folder itself where it is the user's
    // alone.
    return NSHomeDirectory();
}
