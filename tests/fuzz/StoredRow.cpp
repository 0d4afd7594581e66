#include "tests/fuzz/StoredRow.h"

#include "tests/capture/reference/BodyBytes.h"

namespace orlimo {

namespace {

StoredRow::Blob blob(const std::string& bytes)
{
    return {{bytes.begin(), bytes.end()}};
}

/// An archive in which one byte is another.
std::string damagedArchive(InputReader& input)
{
    const std::uint8_t place = input.byte();
    const std::uint8_t value = input.byte();
    std::string archive = mutableStringBody(input.string());
    archive[place % archive.size()] = static_cast<char>(value);
    return archive;
}

/// The marker, the fixed run and what the input has after them: a length, to begin with.
std::string bareArchive(InputReader& input)
{
    return "NSString\x01\x95\x84\x01\x2B" + input.string();
}

StoredRow::Cell textFrom(unsigned kind, InputReader& input)
{
    switch (kind) {
    case 0:
        return StoredRow::Null();
    case 1:
        return StoredRow::Text{input.string()};
    case 2:
        return blob(input.string());
    default:
        return std::int64_t(input.integer());
    }
}

StoredRow::Cell bodyFrom(unsigned kind, InputReader& input)
{
    switch (kind) {
    case 0:
        return StoredRow::Null();
    case 1:
        return blob(input.string());
    case 2:
        return blob(mutableStringBody(input.string()));
    case 3:
        return blob(immutableStringBody(input.string()));
    case 4:
        return blob(bareArchive(input));
    case 5:
        return StoredRow::Text{input.string()};
    case 6:
        return blob(damagedArchive(input));
    default:
        return std::int64_t(input.integer());
    }
}

/// Few dates, so that some are equal; one of them is none.
std::optional<std::int64_t> dateFrom(std::uint8_t byte)
{
    if (byte == 0x80) {
        return std::nullopt;
    }
    return std::int64_t(static_cast<std::int8_t>(byte)) * 1'000'000'000;
}

} // namespace

StoredRow StoredRow::from(InputReader& input)
{
    const unsigned kinds = input.byte();
    StoredRow row;
    row.date = dateFrom(input.byte());
    row.text = textFrom(kinds % 4, input);
    row.body = bodyFrom(kinds / 4 % 8, input);
    return row;
}

std::vector<StoredRow> storedRowsFrom(InputReader& input)
{
    std::vector<StoredRow> rows;
    while (!input.atEnd() && rows.size() < 14) {
        rows.push_back(StoredRow::from(input));
    }
    return rows;
}

} // namespace orlimo
