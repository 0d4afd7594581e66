#pragma once

#include "platform/desktop/SharedApplication.h"

#include <string>
#include <vector>

namespace orlimo {

/// An application that only records its calls: "run", "about" or "terminate".
class RecordingApplication final : public SharedApplication
{
public:
    int run(ApplicationDelegate& /*delegate*/) override
    {
        calls.emplace_back("run");
        return 0;
    }
    void orderFrontStandardAboutPanel() override { calls.emplace_back("about"); }
    void terminate() override { calls.emplace_back("terminate"); }
    [[nodiscard]] bool isTerminating() const override { return false; }

    std::vector<std::string> calls;
};

} // namespace orlimo
