#include "tests/platform/macos/standins/RecordedUnifiedLog.h"

#include <atomic>
#include <cstdarg>
#include <mutex>
#include <optional>
#include <string_view>

#import <Foundation/Foundation.h>
#import <os/log.h>

// Bounds of the section into which the macros put their formats, made by the linker where there is
// one.
extern "C" const char __start_oslogstring[] __attribute__((weak));
extern "C" const char __stop_oslogstring[] __attribute__((weak));

@interface OrlimoRecordedLog : NSObject <OS_os_log> {
@public
    NSString* subsystem;
    NSString* category;
}
@end

namespace orlimo {
namespace {

using Entry = RecordedUnifiedLog::Entry;

struct Record
{
    std::mutex mutex;
    std::optional<std::vector<Entry>> entries;
    bool isErrorEnabled = true;
    std::atomic<int> logsInUse = 0;
};

Record& record()
{
    static Record shared;
    return shared;
}

bool isConstant(const char* format)
{
    return format >= __start_oslogstring && format < __stop_oslogstring;
}

/// The arguments of a format that knows nothing but "%s".
std::vector<std::string> textsIn(std::string_view format, va_list arguments)
{
    std::vector<std::string> texts;
    for (auto place = format.find('%'); place != std::string_view::npos;
         place = format.find('%', place + 1))
    {
        texts.emplace_back(
            format.substr(place, 2) == "%s" ? va_arg(arguments, const char*) : "not a text");
    }
    return texts;
}

} // namespace

RecordedUnifiedLog::RecordedUnifiedLog()
{
    const std::lock_guard lock(record().mutex);
    record().entries.emplace();
}

RecordedUnifiedLog::~RecordedUnifiedLog()
{
    const std::lock_guard lock(record().mutex);
    record().entries.reset();
    record().isErrorEnabled = true;
}

void RecordedUnifiedLog::disableErrors()
{
    const std::lock_guard lock(record().mutex);
    record().isErrorEnabled = false;
}

std::vector<Entry> RecordedUnifiedLog::entries()
{
    const std::lock_guard lock(record().mutex);
    return record().entries.value_or(std::vector<Entry>{});
}

int RecordedUnifiedLog::logsInUse()
{
    return record().logsInUse;
}

} // namespace orlimo

@implementation OrlimoRecordedLog

- (void)dealloc
{
    [subsystem release];
    [category release];
    --orlimo::record().logsInUse;
    [super dealloc];
}

@end

os_log_t os_log_create(const char* subsystem, const char* category)
{
    OrlimoRecordedLog* const log = [[OrlimoRecordedLog alloc] init];
    log->subsystem = [[NSString alloc] initWithUTF8String:subsystem];
    log->category = [[NSString alloc] initWithUTF8String:category];
    ++orlimo::record().logsInUse;
    return log;
}

bool os_log_type_enabled(os_log_t log, os_log_type_t type)
{
    static_cast<void>(log);
    const std::lock_guard lock(orlimo::record().mutex);
    return type != OS_LOG_TYPE_ERROR || orlimo::record().isErrorEnabled;
}

void orlimo_record_os_log(os_log_t log, os_log_type_t type, const char* format, ...)
{
    auto* const origin = static_cast<OrlimoRecordedLog*>(log);
    va_list arguments;
    va_start(arguments, format);
    const orlimo::RecordedUnifiedLog::Entry entry{
        .subsystem = [origin->subsystem UTF8String],
        .category = [origin->category UTF8String],
        .type = type,
        .format = orlimo::isConstant(format) ? format : "not a constant",
        .arguments = orlimo::textsIn(format, arguments)};
    va_end(arguments);
    const std::lock_guard lock(orlimo::record().mutex);
    if (orlimo::record().entries) {
        orlimo::record().entries->push_back(entry);
    }
}
