#include <unicode/regex.h>
#include <unicode/utext.h>

#include <memory>
#include <string>
#include <unordered_map>

// A check compiles its regular expression once for each message, and that takes longer than all the
// rest of it together. Where it is the check that is fuzzed, each expression is compiled once;
// where it is the code rule, it is compiled each time, as in the program.

U_NAMESPACE_BEGIN

namespace {

/// The other way to compile, which the program does not use.
std::unique_ptr<RegexPattern> compiled(
    const UnicodeString& expression, std::uint32_t flags, UParseError& where, UErrorCode& status)
{
    UText* const text = utext_openConstUnicodeString(nullptr, &expression, &status);
    std::unique_ptr<RegexPattern> pattern(RegexPattern::compile(text, flags, where, status));
    utext_close(text);
    return pattern;
}

} // namespace

/// Stands before the library's function of the same name.
RegexPattern* RegexPattern::compile(
    const UnicodeString& regex, std::uint32_t flags, UParseError& pe, UErrorCode& status)
{
    static std::unordered_map<std::string, std::unique_ptr<RegexPattern>> kept;
    std::string key = std::to_string(flags);
    regex.toUTF8String(key);
    auto& pattern = kept[key];
    if (pattern == nullptr) {
        pattern = compiled(regex, flags, pe, status);
    }
    return pattern == nullptr ? nullptr : pattern->clone();
}

U_NAMESPACE_END
