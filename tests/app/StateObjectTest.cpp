#include "app/StateObject.h"

#include "app/ApplicationDelegateAdaptor.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(StateObject, IsBuiltWhenItIsFirstAskedForAndOnce)
{
    int built = 0;
    StateObject<int> object([&built] {
        ++built;
        return std::make_unique<int>(7);
    });
    EXPECT_FALSE(object.isBuilt());
    EXPECT_EQ(built, 0);
    EXPECT_EQ(object.wrappedValue(), 7);
    EXPECT_TRUE(object.isBuilt());
    object.wrappedValue() = 8;
    EXPECT_EQ(object.wrappedValue(), 8);
    EXPECT_EQ(built, 1);
}

TEST(StateObject, NeverAskedForIsNeverBuilt)
{
    int built = 0;
    {
        const StateObject<int> object([&built] {
            ++built;
            return std::make_unique<int>(7);
        });
    }
    EXPECT_EQ(built, 0);
}

/// Counts how many of its kind there are.
struct InstanceCounter
{
    InstanceCounter() { ++number; }
    ~InstanceCounter() { --number; }
    InstanceCounter(const InstanceCounter&) = delete;
    InstanceCounter& operator=(const InstanceCounter&) = delete;

    static inline int number = 0;
};

TEST(ApplicationDelegateAdaptor, MakesOneDelegateAndKeepsIt)
{
    {
        const ApplicationDelegateAdaptor<InstanceCounter> adaptor;
        EXPECT_EQ(InstanceCounter::number, 1);
        EXPECT_EQ(&adaptor.wrappedValue(), &adaptor.wrappedValue());
        EXPECT_EQ(InstanceCounter::number, 1);
    }
    EXPECT_EQ(InstanceCounter::number, 0);
}

} // namespace
} // namespace orlimo
