#include "tests/app/RecordingApplication.h"

namespace orlimo {

int RecordingApplication::run(ApplicationDelegate& /*delegate*/)
{
    calls.emplace_back("run");
    return 0;
}

void RecordingApplication::orderFrontStandardAboutPanel(const AboutPanelOptions& options)
{
    std::string call = "about";
    for (const auto& [name, value] : options) {
        call.append(" ").append(name).append("=").append(value);
    }
    calls.push_back(call);
}

void RecordingApplication::terminate()
{
    calls.emplace_back("terminate");
}

} // namespace orlimo
