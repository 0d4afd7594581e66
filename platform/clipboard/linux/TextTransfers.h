#pragma once

#include "platform/clipboard/linux/SharedText.h"
#include "platform/files/UniqueFd.h"

#include <cstddef>
#include <list>

namespace orlimo {

/// The readers that are being served with a text. Each gets the text as it was when the reader
/// asked, on the event loop and as fast as it reads; one that does not read costs nothing. Main
/// thread.
class TextTransfers
{
public:
    /// How many readers are waited for. When there are more, the one that has waited longest is
    /// hung up on.
    static constexpr std::size_t maxTransfers = 64;

    TextTransfers();
    TextTransfers(const TextTransfers&) = delete;
    TextTransfers& operator=(const TextTransfers&) = delete;
    ~TextTransfers();

    /// Writes `text` to `writeEnd` and closes that at the end; what the reader does not take at
    /// once, later.
    void start(SharedText text, UniqueFd writeEnd);

    /// How many readers have not got all of their text yet.
    [[nodiscard]] std::size_t activeCount() const { return list.size(); }

private:
    struct PendingTransfer;

    std::list<PendingTransfer> list;
};

} // namespace orlimo
