#include "capture/GraphemeClusters.h"

#include "platform/process/FatalStop.h"

#include <unicode/locid.h>

namespace orlimo {

GraphemeClusters::GraphemeClusters(const icu::UnicodeString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    iterator.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status) || iterator == nullptr) {
        fatalStop("the rules for finding characters cannot be loaded");
    }
    iterator->setText(text);
}

bool GraphemeClusters::isBoundary(std::int32_t offset)
{
    return iterator->isBoundary(offset) != 0;
}

std::size_t GraphemeClusters::count()
{
    std::size_t number = 0;
    iterator->first();
    while (iterator->next() != icu::BreakIterator::DONE) {
        ++number;
    }
    return number;
}

} // namespace orlimo
