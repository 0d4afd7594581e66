#include "platform/preferences/linux/UnstoredPreferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

bool always(const std::string& /*key*/)
{
    return true;
}

class UnstoredPreferencesTest : public testing::Test
{
protected:
    UnstoredPreferences unstored;
};

TEST_F(UnstoredPreferencesTest, KeepsTheLastValueOfEachKeyUntilCleared)
{
    EXPECT_EQ(unstored.value("a"), std::nullopt);
    unstored.set(true, "a");
    unstored.set(false, "a");
    unstored.setDefault(true, "b");
    EXPECT_EQ(unstored.value("a"), false);
    EXPECT_EQ(unstored.value("b"), true);
    EXPECT_THAT(unstored.values(), ElementsAre(Pair("a", false), Pair("b", true)));
    unstored.clear();
    EXPECT_EQ(unstored.value("a"), std::nullopt);
    EXPECT_THAT(unstored.values(), IsEmpty());
}

TEST_F(UnstoredPreferencesTest, DefaultsGiveWayToStoredValuesAndSetValuesDoNot)
{
    unstored.set(false, "set");
    unstored.setDefault(true, "stored default");
    unstored.setDefault(true, "absent default");
    unstored.dropDefaults([](const std::string& key) { return key != "absent default"; });
    EXPECT_THAT(unstored.values(), ElementsAre(Pair("absent default", true), Pair("set", false)));
}

TEST_F(UnstoredPreferencesTest, SettingADefaultMakesItAValueThatStays)
{
    unstored.setDefault(true, "a");
    unstored.set(false, "a");
    unstored.dropDefaults(always);
    EXPECT_EQ(unstored.value("a"), false);
}

TEST_F(UnstoredPreferencesTest, ADefaultDoesNotReplaceASetValue)
{
    unstored.set(false, "a");
    unstored.setDefault(true, "a");
    unstored.dropDefaults(always);
    EXPECT_EQ(unstored.value("a"), false);
}

} // namespace
} // namespace orlimo
