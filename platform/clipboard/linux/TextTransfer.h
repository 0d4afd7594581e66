#pragma once

#include "platform/clipboard/linux/SharedText.h"
#include "platform/files/UniqueFd.h"

#include <cstddef>

namespace orlimo {

/// Writes one text to one reader, as much at a time as the reader takes, and never waits. A reader
/// that has hung up ends the transfer and nothing else: no signal reaches the process. One thread.
class TextTransfer
{
public:
    /// For the reader at the other end of `writeDescriptor`, which becomes one that does not block.
    TextTransfer(SharedText textToWrite, UniqueFd writeDescriptor);

    /// Writes as much as goes now. True when there is nothing left to do: all is written, or the
    /// reader takes no more.
    [[nodiscard]] bool advance();

    /// Writable when there is something to do again. Belongs to the transfer.
    [[nodiscard]] int descriptor() const { return writeEnd.get(); }

private:
    SharedText text;
    std::size_t written = 0;
    UniqueFd writeEnd;
};

} // namespace orlimo
