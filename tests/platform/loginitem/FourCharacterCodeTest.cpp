#include "platform/loginitem/LaunchEvent.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(FourCharacterCode, HasTheFirstCharacterInTheHighestByte)
{
    EXPECT_EQ(fourCharacterCode("oapp"), 0x6F617070U);
    EXPECT_EQ(fourCharacterCode("prdt"), 0x70726474U);
    EXPECT_EQ(fourCharacterCode("lgit"), 0x6C676974U);
    EXPECT_EQ(fourCharacterCode("\xFF\xFE\xFD\xFC"), 0xFFFEFDFCU);
}

} // namespace
} // namespace orlimo
