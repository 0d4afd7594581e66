#pragma once

#include <utility>

#include <unistd.h>

namespace orlimo {

/// Owns one file descriptor and closes it when it goes.
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

    /// Gives the descriptor up to the caller, who closes it from here on.
    [[nodiscard]] int release() { return std::exchange(fd, -1); }

    [[nodiscard]] explicit operator bool() const { return fd >= 0; }

private:
    int fd = -1;
};

} // namespace orlimo
