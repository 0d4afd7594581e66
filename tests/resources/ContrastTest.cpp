#include "resources/Contrast.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(ContrastRatio, MatchesTheGuidelines)
{
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21, 1e-9);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::white), 1, 1e-9);
    EXPECT_NEAR(contrastRatio(QColor(118, 118, 118), Qt::white), 4.54, 0.005);
    EXPECT_NEAR(contrastRatio(Qt::red, Qt::white), 3.998, 0.005);
    EXPECT_NEAR(contrastRatio(Qt::blue, Qt::white), 8.59, 0.005);
    EXPECT_EQ(contrastRatio(Qt::red, Qt::blue), contrastRatio(Qt::blue, Qt::red));
    // Below the formula's knee.
    EXPECT_NEAR(contrastRatio(QColor(10, 10, 10), Qt::black), 1.0607, 0.0005);
}

} // namespace
} // namespace orlimo
