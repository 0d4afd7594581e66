#pragma once

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace orlimo {

/// The characters of one text as a reader counts them, that is its extended grapheme clusters: a
/// letter and its combining mark, or a carriage return and its line feed, are one.
class GraphemeClusters
{
public:
    /// Of `text`, which is the caller's and outlives this object unchanged. A host without the data
    /// for finding characters is a fatal stop.
    explicit GraphemeClusters(const icu::UnicodeString& text);

    /// Whether a character begins, or the text ends, at `offset`, in UTF-16 units.
    [[nodiscard]] bool isBoundary(std::int32_t offset);

    /// How many characters the text has.
    [[nodiscard]] std::size_t count();

private:
    std::unique_ptr<icu::BreakIterator> iterator;
};

} // namespace orlimo
