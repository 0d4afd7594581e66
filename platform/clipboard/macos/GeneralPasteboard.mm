#include "platform/clipboard/macos/GeneralPasteboard.h"

#include "platform/process/macos/StringConversion.h"

#import <AppKit/AppKit.h>

namespace orlimo {

namespace {

NSString* nameOf(PasteboardType type)
{
    switch (type) {
    case PasteboardType::string:
        return NSPasteboardTypeString;
    }
    return nil;
}

class GeneralPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> types) override
    {
        @autoreleasepool {
            NSMutableArray<NSString*>* const names = [NSMutableArray array];
            for (const PasteboardType type : types) {
                [names addObject:nameOf(type)];
            }
            [[NSPasteboard generalPasteboard] declareTypes:names owner:nil];
        }
    }

    void setString(std::string_view text, PasteboardType type) override
    {
        @autoreleasepool {
            [[NSPasteboard generalPasteboard] setString:toNSString(text) forType:nameOf(type)];
        }
    }
};

} // namespace

std::unique_ptr<Pasteboard> makeGeneralPasteboard()
{
    return std::make_unique<GeneralPasteboard>();
}

} // namespace orlimo
