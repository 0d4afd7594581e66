#include "platform/files/UniqueFd.h"

#include <gtest/gtest.h>

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {
namespace {

bool isOpen(int descriptor)
{
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

TEST(UniqueFd, ClosesTheDescriptorOfItsLastOwner)
{
    const UniqueFd none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), -1);
    UniqueFd first(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(first);
    const int descriptor = first.get();
    {
        UniqueFd second(std::move(first));
        EXPECT_EQ(second.get(), descriptor);
        EXPECT_TRUE(isOpen(descriptor));
        second = UniqueFd(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        EXPECT_FALSE(isOpen(descriptor));
        EXPECT_TRUE(isOpen(second.get()));
    }
    EXPECT_FALSE(isOpen(descriptor));
}

TEST(UniqueFd, ZeroIsADescriptor)
{
    const UniqueFd saved(::fcntl(0, F_DUPFD_CLOEXEC, 3));
    ASSERT_TRUE(saved);
    {
        const UniqueFd zero(::dup2(saved.get(), 0));
        EXPECT_TRUE(zero);
    }
    EXPECT_FALSE(isOpen(0));
    EXPECT_EQ(::dup2(saved.get(), 0), 0);
}

} // namespace
} // namespace orlimo
