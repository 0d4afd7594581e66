// Bitmaps, images made of them, and symbols that the script says there are. A symbol is drawn as a
// blue box that leaves the lower half of its right half free: with it a drawing that is upside down
// or turned shows.

#include "tests/platform/macos/standins/ScriptedAppKit.h"

using orlimo::scriptedAppKit;

NSString* NSDeviceRGBColorSpace = @"NSDeviceRGBColorSpace";
const CGFloat NSFontWeightRegular = 0;

@interface ScriptedImage : NSImage {
    BOOL isTemplate;
    NSSize sizeOfAPoint;
}
@end

@interface ScriptedGraphicsContext : NSGraphicsContext {
    NSBitmapImageRep* bitmap;
}
+ (ScriptedGraphicsContext*)contextFor:(NSBitmapImageRep*)target;
- (void)fill:(NSRect)area;
@end

@interface NSImageSymbolConfiguration (Scripted)
- (CGFloat)pointSize;
@end

@implementation NSImageRep

- (NSInteger)pixelsWide
{
    return _pixelsWide;
}

- (NSInteger)pixelsHigh
{
    return _pixelsHigh;
}

- (void)setSize:(NSSize)aSize
{
    _size = aSize;
}

- (NSSize)size
{
    return _size;
}

@end

@implementation NSBitmapImageRep

- (id)initWithBitmapDataPlanes:(unsigned char**)planes
                    pixelsWide:(NSInteger)width
                    pixelsHigh:(NSInteger)height
                 bitsPerSample:(NSInteger)bitsPerSample
               samplesPerPixel:(NSInteger)samplesPerPixel
                      hasAlpha:(BOOL)alpha
                      isPlanar:(BOOL)isPlanar
                colorSpaceName:(NSString*)colorSpaceName
                   bytesPerRow:(NSInteger)rowBytes
                  bitsPerPixel:(NSInteger)pixelBits
{
    self = [super init];
    const bool isAsExpected = planes == nullptr && bitsPerSample == 8 && samplesPerPixel == 4 &&
                              alpha && !isPlanar && colorSpaceName == NSDeviceRGBColorSpace &&
                              pixelBits == 32 && rowBytes == width * 4 && width > 0 && height > 0;
    if (self != nil && isAsExpected) {
        _pixelsWide = width;
        _pixelsHigh = height;
        _size = NSMakeSize(static_cast<CGFloat>(width), static_cast<CGFloat>(height));
        _bytesPerRow = rowBytes;
        // As memory comes: not empty.
        NSMutableData* const data =
            [[NSMutableData alloc] initWithLength:static_cast<NSUInteger>(rowBytes * height)];
        memset([data mutableBytes], 0xA5, [data length]);
        _imageData = data;
        return self;
    }
    [self release];
    return nil;
}

- (void)dealloc
{
    [_imageData release];
    [super dealloc];
}

- (NSInteger)bytesPerRow
{
    return _bytesPerRow;
}

- (unsigned char*)bitmapData
{
    return static_cast<unsigned char*>([static_cast<NSMutableData*>(_imageData) mutableBytes]);
}

@end

@implementation NSImage

+ (instancetype)allocWithZone:(NSZone*)zone
{
    return self == [NSImage class] ? [ScriptedImage allocWithZone:zone]
                                   : [super allocWithZone:zone];
}

+ (instancetype)imageWithSystemSymbolName:(NSString*)symbolName
                 accessibilityDescription:(NSString*)description
{
    const auto found = scriptedAppKit().symbols.find([symbolName UTF8String]);
    return found == scriptedAppKit().symbols.end()
               ? nil
               : [[[NSImage alloc] initWithSize:found->second] autorelease];
}

- (id)initWithSize:(NSSize)aSize
{
    self = [super init];
    if (self != nil) {
        _size = aSize;
        _reps = [[NSMutableArray alloc] init];
    }
    return self;
}

- (void)dealloc
{
    [_reps release];
    [super dealloc];
}

- (NSSize)size
{
    return _size;
}

- (void)addRepresentation:(NSImageRep*)imageRep
{
    [_reps addObject:imageRep];
}

- (NSArray*)representations
{
    return _reps;
}

@end

@implementation ScriptedImage

- (BOOL)isTemplate
{
    return isTemplate;
}

- (void)setTemplate:(BOOL)flag
{
    isTemplate = flag;
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration
{
    const CGFloat points = [configuration pointSize];
    return [[[NSImage alloc] initWithSize:NSMakeSize(_size.width * points, _size.height * points)]
        autorelease];
}

- (void)drawInRect:(NSRect)dstRect
          fromRect:(NSRect)srcRect
         operation:(NSCompositingOperation)op
          fraction:(CGFloat)delta
{
    NSGraphicsContext* const context = [NSGraphicsContext currentContext];
    if (!NSIsEmptyRect(srcRect) || op != NSCompositingOperationSourceOver || delta != 1) {
        return;
    }
    NSRect left = NSZeroRect;
    NSRect right = NSZeroRect;
    NSRect upperRight = NSZeroRect;
    NSRect lowerRight = NSZeroRect;
    NSDivideRect(dstRect, &left, &right, NSWidth(dstRect) / 2, NSMinXEdge);
    NSDivideRect(right, &lowerRight, &upperRight, NSHeight(right) / 2, NSMinYEdge);
    [static_cast<ScriptedGraphicsContext*>(context) fill:left];
    [static_cast<ScriptedGraphicsContext*>(context) fill:upperRight];
}

@end

@implementation NSImageSymbolConfiguration

+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight
{
    NSImageSymbolConfiguration* const configuration =
        [[[NSImageSymbolConfiguration alloc] init] autorelease];
    configuration->_pointSize = pointSize;
    configuration->_weight = weight;
    return configuration;
}

- (CGFloat)pointSize
{
    return _pointSize;
}

@end

namespace {

/// The context that is drawn to, and the ones that were before it.
NSMutableArray* contexts()
{
    static NSMutableArray* const stack = [[NSMutableArray alloc] init];
    return stack;
}

} // namespace

@implementation NSGraphicsContext

+ (NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap
{
    return [ScriptedGraphicsContext contextFor:bitmap];
}

+ (void)saveGraphicsState
{
    [contexts() addObject:[NSNull null]];
}

+ (void)setCurrentContext:(NSGraphicsContext*)context
{
    [contexts() replaceObjectAtIndex:[contexts() count] - 1 withObject:context];
}

+ (NSGraphicsContext*)currentContext
{
    return [contexts() lastObject];
}

+ (void)restoreGraphicsState
{
    [contexts() removeLastObject];
}

- (void)flushGraphics
{}

@end

@implementation ScriptedGraphicsContext

+ (ScriptedGraphicsContext*)contextFor:(NSBitmapImageRep*)target
{
    ScriptedGraphicsContext* const context = [[[ScriptedGraphicsContext alloc] init] autorelease];
    context->bitmap = [target retain];
    return context;
}

- (void)dealloc
{
    [bitmap release];
    [super dealloc];
}

- (void)fill:(NSRect)area
{
    unsigned char* const data = [bitmap bitmapData];
    for (NSInteger row = 0; row < [bitmap pixelsHigh]; ++row) {
        for (NSInteger column = 0; column < [bitmap pixelsWide]; ++column) {
            // Rows are stored from the top, points counted from the bottom.
            const NSPoint middle = NSMakePoint(
                static_cast<CGFloat>(column) + 0.5,
                static_cast<CGFloat>([bitmap pixelsHigh] - row) - 0.5);
            if (NSPointInRect(middle, area)) {
                unsigned char* const pixel = data + row * [bitmap bytesPerRow] + column * 4;
                pixel[0] = 0;
                pixel[1] = 0;
                pixel[2] = 255;
                pixel[3] = 255;
            }
        }
    }
}

@end
