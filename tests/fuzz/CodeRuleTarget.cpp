#include "capture/CodeExtraction.h"
#include "capture/Preferences.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/reference/ReferenceCodeExtraction.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/ProgramOutcomes.h"

#include <string>

namespace orlimo {

/// The first byte is the preference for four digits, the others are the message's text, as the
/// store's reader would hand it on: with its ill-formed parts replaced.
Finding checkInput(std::string_view input)
{
    if (input.empty()) {
        return std::nullopt;
    }
    const bool withFourDigits = input.front() == '4';
    const std::string text = referenceRepaired(input.substr(1));
    MemoryUserDefaults defaults;
    defaults.setBool(withFourDigits, preference::fourDigitInclude);

    logged::clear();
    const auto code = extractCode(text, defaults);
    const ReferenceCodes expected = referenceCodes(text, withFourDigits);
    return firstOf({
        mismatch("code", code, expected.code),
        mismatch("log", logged::lines(), expected.lines),
    });
}

} // namespace orlimo
