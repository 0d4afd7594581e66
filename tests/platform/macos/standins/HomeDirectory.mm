// Where the user's home is. GNUstep asks the user database alone and would keep its preferences in
// the home of whoever runs the tests; put before its own, this function leads all of it to where
// the tests have led everything else.

#include <cstdlib>

#import <Foundation/Foundation.h>

NSString* NSHomeDirectoryForUser(NSString* /*name*/)
{
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): set before main
    return home == nullptr || *home == '\0' ? nil : [NSString stringWithUTF8String:home];
}
