#pragma once

#include <stdint.h>

/// Four characters in one number, the first in the highest byte.
typedef uint32_t FourCharCode;
typedef FourCharCode OSType;
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;

enum {
    kCoreEventClass = 'aevt',
    kAEReopenApplication = 'rapp',
    keyAEPropData = 'prdt',
};
