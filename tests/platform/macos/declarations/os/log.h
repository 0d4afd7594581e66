// What the program uses of the unified log, which other systems lack. macOS 10.12
#pragma once

#import <Foundation/Foundation.h>
#include <stdbool.h>
#include <stdint.h>

@protocol OS_os_log <NSObject>
@end
typedef NSObject<OS_os_log>* os_log_t;

enum {
    OS_LOG_TYPE_ERROR = 0x10,
};
typedef uint8_t os_log_type_t;

extern "C" {

/// The caller owns it.
os_log_t os_log_create(const char* subsystem, const char* category);
bool os_log_type_enabled(os_log_t log, os_log_type_t type);

/// Stands for the function behind the macro, which is the system's own affair.
void orlimo_record_os_log(os_log_t log, os_log_type_t type, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

} // extern "C"

/// `format` has to be a literal, as it has where the system puts it into a section of its own.
#define os_log_error(log, format, ...)                                                             \
    __extension__({                                                                                \
        const os_log_t os_log_recorded = (log);                                                    \
        if (os_log_type_enabled(os_log_recorded, OS_LOG_TYPE_ERROR)) {                             \
            static const char os_log_format[] = format;                                            \
            orlimo_record_os_log(                                                                  \
                os_log_recorded, OS_LOG_TYPE_ERROR, os_log_format, ##__VA_ARGS__);                 \
        }                                                                                          \
    })
