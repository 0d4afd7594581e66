#include "tests/app/RecordingApplication.h"

namespace orlimo {

int RecordingApplication::run(ApplicationDelegate& /*delegate*/)
{
    calls.emplace_back("run");
    return 0;
}

void RecordingApplication::orderFrontStandardAboutPanel()
{
    calls.emplace_back("about");
}

void RecordingApplication::terminate()
{
    calls.emplace_back("terminate");
}

} // namespace orlimo
