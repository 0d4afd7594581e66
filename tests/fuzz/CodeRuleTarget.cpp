#include "capture/CodeExtraction.h"
#include "capture/PreferenceKeys.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/reference/PlainCodeRule.h"
#include "tests/capture/reference/PlainUtf8.h"
#include "tests/fuzz/Disagreement.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/LoggedLines.h"

#include <string>

namespace orlimo {

/// The first byte is the preference for four digits, the others are the message's text, as the
/// store's reader would hand it on: with its ill-formed parts replaced.
Finding judge(std::string_view input)
{
    if (input.empty()) {
        return std::nullopt;
    }
    const bool withFourDigits = input.front() == '4';
    const std::string text = plainlyRepaired(input.substr(1));
    MemoryUserDefaults defaults;
    defaults.setBool(withFourDigits, preference::fourDigitInclude);

    logged::clear();
    const auto code = extractCode(text, defaults);
    const PlainCodes expected = plainCodes(text, withFourDigits);
    if (auto finding = disagreement("code", code, expected.code)) {
        return finding;
    }
    return disagreement("log", logged::lines(), expected.lines);
}

} // namespace orlimo
