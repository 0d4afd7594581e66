// What the program uses of CoreServices: the codes of Apple events. macOS 10.0 unless it says more.
#pragma once

#include <stdint.h>

/// Four characters in one number, the first in the highest byte.
typedef uint32_t FourCharCode;
typedef FourCharCode OSType;
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;

/// The events that every application understands.
enum {
    kCoreEventClass = 'aevt',
    kAEOpenApplication = 'oapp',
    kAEReopenApplication = 'rapp',
};

/// How the application was launched, as the property data of the launch event. macOS 10.6
enum {
    keyAEPropData = 'prdt',
    keyAELaunchedAsLogInItem = 'lgit',
};
