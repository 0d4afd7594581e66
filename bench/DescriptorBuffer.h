#pragma once

#include <streambuf>

namespace orlimo {

/// Leads a stream to a descriptor, which stays the caller's, without keeping anything back.
class DescriptorBuffer final : public std::streambuf
{
public:
    explicit DescriptorBuffer(int fd)
        : descriptor(fd)
    {}

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* characters, std::streamsize count) override;

private:
    int descriptor;
};

} // namespace orlimo
