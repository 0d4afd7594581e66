#pragma once

#include "platform/files/UniqueFd.h"

#include <cstddef>
#include <list>
#include <memory>
#include <string>

namespace orlimo {

/// A text that several readers are served from, each at its own pace. Never null.
using SharedText = std::shared_ptr<const std::string>;

/// The transfers of texts to the readers of the clipboard. Each reader gets the text as it was when
/// the reader asked for it, on the event loop and as fast as it reads; a reader that does not read
/// costs nothing, and one that hangs up ends its transfer and nothing else, provided that the
/// process ignores SIGPIPE (`prepareStandardStreams`). Main thread.
class TextTransfers
{
public:
    /// How many transfers may be pending. When there are more, the oldest one is dropped.
    static constexpr std::size_t maxTransfers = 64;

    TextTransfers();
    TextTransfers(const TextTransfers&) = delete;
    TextTransfers& operator=(const TextTransfers&) = delete;
    ~TextTransfers();

    /// Writes `text` to `writeEnd`, which becomes non-blocking, and closes it afterwards. What the
    /// reader does not take at once is written later.
    void start(SharedText text, UniqueFd writeEnd);

    /// How many readers have not received all of their text yet.
    [[nodiscard]] std::size_t activeCount() const { return list.size(); }

private:
    class Transfer;
    struct PendingTransfer;

    std::list<PendingTransfer> list;
};

} // namespace orlimo
