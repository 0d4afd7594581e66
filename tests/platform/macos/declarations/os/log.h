// What the program uses of the unified log, which other systems lack.
#pragma once

#include <stdbool.h>
#include <stdint.h>

#ifdef __OBJC__
#import <Foundation/Foundation.h>
/// The system's library, for Objective-C. macOS 10.12
@protocol OS_os_log <NSObject>
@end
/// macOS 10.12
typedef NSObject<OS_os_log>* os_log_t;
#else
/// The system's library. macOS 10.12
typedef struct os_log_s* os_log_t;
#endif

/// The system's library
/// macOS 10.12
enum {
    OS_LOG_TYPE_DEFAULT = 0x00,
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_DEBUG = 0x02,
    OS_LOG_TYPE_ERROR = 0x10,
    OS_LOG_TYPE_FAULT = 0x11,
};
/// macOS 10.12
typedef uint8_t os_log_type_t;

#ifdef __cplusplus
extern "C" {
#endif

/// macOS 10.12: the caller owns it.
os_log_t os_log_create(const char* subsystem, const char* category);
/// macOS 10.12
bool os_log_type_enabled(os_log_t log, os_log_type_t type);

/// Stands for the function behind the macros, which is the system's own affair.
void orlimo_record_os_log(os_log_t log, os_log_type_t type, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

/// macOS 10.12: `format` has to be a literal, as it has where the system puts it into a section of
/// its own.
#define os_log_with_type(log, type, format, ...)                                                   \
    __extension__({                                                                                \
        const os_log_t os_log_recorded = (log);                                                    \
        if (os_log_type_enabled(os_log_recorded, (type))) {                                        \
            __attribute__((section("oslogstring"))) static const char os_log_format[] = format;    \
            orlimo_record_os_log(os_log_recorded, (type), os_log_format, ##__VA_ARGS__);           \
        }                                                                                          \
    })
/// macOS 10.12
#define os_log_error(log, format, ...)                                                             \
    os_log_with_type(log, OS_LOG_TYPE_ERROR, format, ##__VA_ARGS__)
