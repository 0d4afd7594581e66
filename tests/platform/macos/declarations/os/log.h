#pragma once

#import <Foundation/Foundation.h>
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

/// Replaces the undocumented function behind the macro.
__attribute__((format(printf, 2, 3))) void
orlimo_record_os_log(os_log_t log, const char* format, ...);

} // extern "C"

/// `format` has to be a literal, as it has where the system puts it into a section of its own.
#define os_log_error(log, format, ...) orlimo_record_os_log(log, "" format, ##__VA_ARGS__)
