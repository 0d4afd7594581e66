#pragma once

#include "platform/desktop/SharedApplication.h"

#include <string>
#include <vector>

namespace orlimo {

/// An application that does nothing but note what it is asked to do.
class RecordingApplication final : public SharedApplication
{
public:
    int run(ApplicationDelegate& delegate) override;
    void orderFrontStandardAboutPanel() override;
    void terminate() override;
    [[nodiscard]] bool isTerminating() const override { return false; }

    /// Each call so far: "run", "about" or "terminate".
    std::vector<std::string> calls;
};

} // namespace orlimo
