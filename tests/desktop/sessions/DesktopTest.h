#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orlimo {

/// A test on a desktop of its own, skipped on a machine that cannot start it.
template <typename Desktop> class DesktopTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (const std::string skipReason = Desktop::skipReason(); !skipReason.empty()) {
            GTEST_SKIP() << skipReason;
        }
        ownDesktop.emplace();
    }

    [[nodiscard]] Desktop& desktop() { return *ownDesktop; }

private:
    std::optional<Desktop> ownDesktop;
};

} // namespace orlimo
