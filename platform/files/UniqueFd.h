#pragma once

#include <utility>

#include <unistd.h>

namespace orlimo {

/// Owns one file descriptor and closes it on destruction.
class UniqueFd
{
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor)
        : fd(descriptor)
    {}
    UniqueFd(UniqueFd&& other) noexcept
        : fd(std::exchange(other.fd, -1))
    {}
    UniqueFd& operator=(UniqueFd&& other) noexcept
    {
        std::swap(fd, other.fd);
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd()
    {
        if (fd >= 0) {
            ::close(fd);
        }
    }

    [[nodiscard]] int get() const { return fd; }

    /// Transfers the descriptor to the caller.
    [[nodiscard]] int release() { return std::exchange(fd, -1); }

    [[nodiscard]] explicit operator bool() const { return fd >= 0; }

private:
    int fd = -1;
};

} // namespace orlimo
