#pragma once

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace orlimo {

/// The extended grapheme clusters of one text, which are what a reader counts as characters: a
/// letter and its combining mark, or a carriage return and its line feed, are one.
class GraphemeClusters
{
public:
    /// Of `text`, which is the caller's and outlives this object unchanged. A system without ICU's
    /// break data is a fatal stop.
    explicit GraphemeClusters(const icu::UnicodeString& text);

    /// Whether a cluster begins, or the text ends, at `offset`, in UTF-16 units.
    [[nodiscard]] bool isBoundary(std::int32_t offset);

    /// How many clusters the text has.
    [[nodiscard]] std::size_t count();

private:
    std::unique_ptr<icu::BreakIterator> iterator;
};

} // namespace orlimo
