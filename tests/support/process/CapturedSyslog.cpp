#include "tests/support/process/CapturedSyslog.h"

#include "tests/support/process/SyslogReplacement.h"

#include <mutex>

namespace orlimo {

namespace {

std::mutex captureLock;
std::vector<CapturedSyslog::Entry> captured;

void capture(int priority, const std::string& text)
{
    const std::lock_guard guard(captureLock);
    captured.push_back({.priority = priority, .text = text});
}

} // namespace

CapturedSyslog::CapturedSyslog()
{
    captured.clear();
    setSyslogHandler(capture);
}

CapturedSyslog::~CapturedSyslog()
{
    setSyslogHandler(nullptr);
}

std::vector<CapturedSyslog::Entry> CapturedSyslog::entries()
{
    const std::lock_guard guard(captureLock);
    return captured;
}

} // namespace orlimo
