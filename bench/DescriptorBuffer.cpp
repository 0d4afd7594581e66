#include "bench/DescriptorBuffer.h"

#include "platform/files/WriteAll.h"

namespace orlimo {

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character)
{
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        const char one = traits_type::to_char_type(character);
        writeAll(descriptor, {&one, 1});
    }
    return traits_type::not_eof(character);
}

std::streamsize DescriptorBuffer::xsputn(const char* characters, std::streamsize count)
{
    writeAll(descriptor, {characters, static_cast<std::size_t>(count)});
    return count;
}

} // namespace orlimo
