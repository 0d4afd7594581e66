#include "platform/files/UniqueFd.h"

#include <gtest/gtest.h>

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {
namespace {

UniqueFd openNothing()
{
    return UniqueFd(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool isOpen(int descriptor)
{
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

TEST(UniqueFd, IsEmptyAtFirst)
{
    const UniqueFd none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), -1);
}

TEST(UniqueFd, ClosesWhenItGoes)
{
    int descriptor = -1;
    {
        const UniqueFd owner = openNothing();
        descriptor = owner.get();
        EXPECT_TRUE(owner);
        EXPECT_TRUE(isOpen(descriptor));
    }
    EXPECT_FALSE(isOpen(descriptor));
}

TEST(UniqueFd, HandsItsDescriptorOverWhenItIsMoved)
{
    UniqueFd first = openNothing();
    const int descriptor = first.get();
    const UniqueFd second(std::move(first));
    EXPECT_EQ(second.get(), descriptor);
    EXPECT_TRUE(isOpen(descriptor));
}

TEST(UniqueFd, ClosesWhatItHeldWhenItIsGivenAnother)
{
    UniqueFd owner = openNothing();
    const int old = owner.get();
    owner = openNothing();
    EXPECT_FALSE(isOpen(old));
    EXPECT_TRUE(isOpen(owner.get()));
}

TEST(UniqueFd, TakesZeroForADescriptorLikeAnyOther)
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
