#include "platform/preferences/UserDefaults.h"
#include "platform/process/macos/StringConversion.h"

#import <Foundation/Foundation.h>

namespace orlimo {

namespace {

/// The preferences that the system keeps for the application's bundle. It stores and reads for
/// every process in one place of its own, so that nothing has to be brought into step here.
class StandardUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] bool boolForKey(std::string_view key) const override
    {
        @autoreleasepool {
            return [[NSUserDefaults standardUserDefaults] boolForKey:toNSString(key)];
        }
    }

    void setBool(bool value, std::string_view key) override
    {
        @autoreleasepool {
            [[NSUserDefaults standardUserDefaults] setBool:value forKey:toNSString(key)];
        }
    }

    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        @autoreleasepool {
            NSDictionary<NSString*, id>* const stored =
                [[NSUserDefaults standardUserDefaults] dictionaryRepresentation];
            std::map<std::string, std::string> dictionary;
            for (NSString* key in stored) {
                dictionary.emplace(toUtf8(key), toUtf8([[stored objectForKey:key] description]));
            }
            return dictionary;
        }
    }
};

} // namespace

UserDefaults& standardUserDefaults()
{
    static StandardUserDefaults defaults;
    return defaults;
}

} // namespace orlimo
