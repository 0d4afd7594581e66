#include "tests/fuzz/ReferenceCheck.h"

#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"
#include "tests/capture/reference/ReferenceCodeExtraction.h"
#include "tests/capture/reference/ReferenceUnicode.h"

#include <algorithm>

namespace orlimo {

namespace {

using Lines = std::vector<std::string>;

/// The bytes of what stands in a column, which make up its text too.
struct CellBytes
{
    std::optional<std::string> operator()(StoredRow::Null /*null*/) const { return std::nullopt; }
    std::optional<std::string> operator()(const StoredRow::Text& text) const { return text.bytes; }
    std::optional<std::string> operator()(const StoredRow::Blob& blob) const
    {
        return std::string(blob.bytes.begin(), blob.bytes.end());
    }
    std::optional<std::string> operator()(std::int64_t number) const
    {
        return std::to_string(number);
    }
};

std::optional<std::string> bytesOf(const StoredRow::Cell& cell)
{
    return std::visit(CellBytes(), cell);
}

bool isOlder(const StoredRow& one, const StoredRow& other)
{
    if (!one.date || !other.date) {
        return !one.date && other.date;
    }
    return *one.date < *other.date;
}

/// Newest first; of those with one date, the last inserted comes first: the store's index is walked
/// backwards.
std::vector<StoredRow> newestRows(std::vector<StoredRow> rows)
{
    std::stable_sort(rows.begin(), rows.end(), isOlder);
    std::reverse(rows.begin(), rows.end());
    rows.resize(std::min<std::size_t>(rows.size(), 10));
    return rows;
}

void append(Lines& lines, const Lines& more)
{
    lines.insert(lines.end(), more.begin(), more.end());
}

/// The outcome of the row's body alone.
ReferenceDecoding decodedBody(const StoredRow& row)
{
    return referenceDecoding(asHexadecimal(bytesOf(row.body).value_or("")));
}

} // namespace

ReferenceCheck referenceCheck(const std::vector<StoredRow>& rows, bool withFourDigits)
{
    ReferenceCheck check{.verificationCode = "No Code", .lines = {"ready to access disk"}};
    for (const StoredRow& row : newestRows(rows)) {
        std::string words;
        if (const auto text = bytesOf(row.text)) {
            words = referenceRepaired(text->substr(0, text->find('\0')));
        } else {
            const ReferenceDecoding decoding = decodedBody(row);
            append(check.lines, decoding.lines);
            if (std::holds_alternative<ReferenceDecoding::Fatal>(decoding.outcome)) {
                check.isFatal = true;
                check.verificationCode.clear();
                return check;
            }
            const auto* const found =
                std::get_if<ReferenceDecoding::MessageText>(&decoding.outcome);
            if (found == nullptr) {
                continue;
            }
            words = found->text;
        }
        const ReferenceCodes codes = referenceCodes(words, withFourDigits);
        append(check.lines, codes.lines);
        if (codes.code) {
            check.verificationCode = *codes.code;
            return check;
        }
    }
    return check;
}

} // namespace orlimo
