#include "sample/ArchivedBody.h"

#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <utility>

namespace orlimo::sample {

namespace {

// The tags of the archive's format.
constexpr std::uint8_t newObject = 0x84;
constexpr std::uint8_t endOfObject = 0x86;
constexpr std::uint8_t noSuperclass = 0x85;
constexpr std::uint8_t twoByteInteger = 0x81;
constexpr std::uint8_t objectType = 0x92;
constexpr std::uint8_t countedBytesType = 0x2B;

/// How later parts of an archive refer to earlier ones. Classes are numbered with the objects,
/// class names with the types, both from 92 on, so that the numbers depend on how many classes the
/// string has.
struct References
{
    std::uint8_t baseClass;
    /// The class NSString. The type of its text happens to have the same number.
    std::uint8_t stringClass;
    std::uint8_t integerType;
};

constexpr References mutableReferences{.baseClass = 0x95, .stringClass = 0x98, .integerType = 0x9B};
constexpr References immutableReferences{
    .baseClass = 0x94, .stringClass = 0x96, .integerType = 0x99};

/// Writes the archive, one element after the other.
class Archive
{
public:
    void append(std::initializer_list<std::uint8_t> values)
    {
        bytes.insert(bytes.end(), values.begin(), values.end());
    }

    void appendLength(std::size_t length)
    {
        if (length > std::numeric_limits<std::uint16_t>::max()) {
            throw std::length_error("a body's text may have at most 65535 bytes");
        }
        // Integers from 128 on are stored in two bytes, the low one first, behind a tag.
        if (length >= 0x80) {
            append({twoByteInteger, static_cast<std::uint8_t>(length & 0xFFU)});
            append({static_cast<std::uint8_t>(length >> 8U)});
        } else {
            append({static_cast<std::uint8_t>(length)});
        }
    }

    void appendCounted(std::string_view text)
    {
        appendLength(text.size());
        bytes.insert(bytes.end(), text.begin(), text.end());
    }

    void appendClass(std::string_view name, std::uint8_t version)
    {
        append({newObject, newObject});
        appendCounted(name);
        append({version});
    }

    [[nodiscard]] std::vector<std::uint8_t> take() { return std::move(bytes); }

private:
    std::vector<std::uint8_t> bytes;
};

void appendHeader(Archive& archive)
{
    archive.append({0x04}); // the format's version
    archive.appendCounted("streamtyped");
    archive.append({twoByteInteger, 0xE8, 0x03, newObject, 0x01, 0x40});
    archive.append({newObject});
}

/// How many UTF-16 units the text has, the unit in which attributes count.
std::size_t utf16Length(std::string_view text)
{
    std::size_t length = 0;
    for (const char byte : text) {
        const auto value = static_cast<std::uint8_t>(byte);
        const bool startsCodePoint = (value & 0xC0U) != 0x80U;
        length += (startsCodePoint ? 1U : 0U) + (value >= 0xF0U ? 1U : 0U);
    }
    return length;
}

void appendMutableString(Archive& archive, std::string_view text)
{
    archive.appendClass("NSMutableAttributedString", 0x00);
    archive.appendClass("NSAttributedString", 0x00);
    archive.appendClass("NSObject", 0x00);
    archive.append({noSuperclass, objectType, newObject});
    archive.appendClass("NSMutableString", 0x01);
    archive.appendClass("NSString", 0x01);
    archive.append({mutableReferences.baseClass, newObject, 0x01, countedBytesType});
    archive.appendCounted(text);
}

void appendImmutableString(Archive& archive, std::string_view text)
{
    archive.appendClass("NSAttributedString", 0x00);
    archive.appendClass("NSObject", 0x00);
    archive.append({noSuperclass, objectType, newObject});
    archive.appendClass("NSString", 0x01);
    archive.append({immutableReferences.baseClass, newObject, 0x01, countedBytesType});
    archive.appendCounted(text);
}

/// One run of attributes over the whole text: the number of the message's part, which is 0.
void appendAttributes(Archive& archive, std::size_t length, const References& references)
{
    archive.append({endOfObject, newObject, 0x02, 0x69, 0x49, 0x01});
    archive.appendLength(length);
    archive.append({objectType, newObject});
    archive.appendClass("NSDictionary", 0x00);
    archive.append({references.baseClass, newObject, 0x01, 0x69, 0x01});
    archive.append({objectType, newObject, references.stringClass, references.stringClass});
    archive.appendCounted("__kIMMessagePartAttributeName");
    archive.append({endOfObject, objectType, newObject});
    archive.appendClass("NSNumber", 0x00);
    archive.appendClass("NSValue", 0x00);
    archive.append({references.baseClass, newObject, 0x01, 0x2A});
    archive.append({newObject, references.integerType, references.integerType, 0x00});
    archive.append({endOfObject, endOfObject, endOfObject});
}

} // namespace

std::vector<std::uint8_t> archivedBody(std::string_view text, ArchivedString string)
{
    Archive archive;
    appendHeader(archive);
    if (string == ArchivedString::mutableString) {
        appendMutableString(archive, text);
        appendAttributes(archive, utf16Length(text), mutableReferences);
    } else {
        appendImmutableString(archive, text);
        appendAttributes(archive, utf16Length(text), immutableReferences);
    }
    return archive.take();
}

} // namespace orlimo::sample
