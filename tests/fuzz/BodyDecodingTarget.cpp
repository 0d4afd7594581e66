#include "capture/BodyDecoding.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/ProgramOutcomes.h"

#include <string>

namespace orlimo {

namespace {

/// The first byte says what the others are: any text in place of the hexadecimal one, or the body's
/// own bytes, from which the store makes that.
std::string hexadecimalText(std::string_view input)
{
    if (input.empty()) {
        return {};
    }
    const std::string_view rest = input.substr(1);
    return input.front() == 't' ? referenceRepaired(rest) : asHexadecimal(rest);
}

} // namespace

Finding checkInput(std::string_view input)
{
    const std::string text = hexadecimalText(input);
    logged::clear();
    ReferenceDecoding actual;
    try {
        actual.messageText = decodeAttributedBody(text);
    } catch (const FatalStopException&) {
        actual.isFatal = true;
    }
    const ReferenceDecoding expected = referenceDecoding(text);
    return firstOf({
        mismatch("fatal stop", actual.isFatal, expected.isFatal),
        mismatch("text", actual.messageText, expected.messageText),
        mismatch("log", logged::lines(), expected.lines),
    });
}

} // namespace orlimo
