// What the program uses of CoreServices: the codes of Apple events.
#pragma once

#include <stdint.h>

/// CoreServices (CarbonCore, AE): four characters in one number, the first in the highest byte.
/// macOS 10.0
typedef uint32_t UInt32;
/// macOS 10.0
typedef int32_t SInt32;
/// macOS 10.0
typedef int16_t SInt16;
/// macOS 10.0
typedef UInt32 FourCharCode;
/// macOS 10.0
typedef FourCharCode OSType;
/// macOS 10.0
typedef FourCharCode AEEventClass;
/// macOS 10.0
typedef FourCharCode AEEventID;
/// macOS 10.0
typedef FourCharCode AEKeyword;
/// macOS 10.0
typedef SInt16 AEReturnID;
/// macOS 10.0
typedef SInt32 AETransactionID;

/// CoreServices (AE), the events that every application understands. macOS 10.0
enum {
    kCoreEventClass = 'aevt',
};
/// macOS 10.0
enum {
    kAEOpenApplication = 'oapp',
    kAEOpenDocuments = 'odoc',
    kAEQuitApplication = 'quit',
    kAEReopenApplication = 'rapp',
};
/// macOS 10.0
enum {
    keyAEPropData = 'prdt',
};
/// CoreServices (AE), how the application was launched, as the property data of the launch event.
/// macOS 10.6
enum {
    keyAELaunchedAsLogInItem = 'lgit',
    keyAELaunchedAsServiceItem = 'svit',
};
/// macOS 10.0
enum {
    kAutoGenerateReturnID = -1,
    kAnyTransactionID = 0,
};
