#include "platform/clipboard/linux/TextTransfers.h"

#include "platform/clipboard/linux/DescriptorNotifier.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace orlimo {

/// Writes one text to one reader, as much at a time as the reader takes, and never blocks.
class TextTransfers::Transfer
{
public:
    Transfer(SharedText textToWrite, UniqueFd writeDescriptor)
        : text(std::move(textToWrite))
        , writeEnd(std::move(writeDescriptor))
    {
        const int flags = ::fcntl(writeEnd.get(), F_GETFL);
        (void)::fcntl(writeEnd.get(), F_SETFL, flags | O_NONBLOCK);
    }

    /// Writes as much as the pipe takes now. True when there is nothing left to do: all is written,
    /// or the reader has hung up.
    [[nodiscard]] bool advance()
    {
        while (written < text->size()) {
            const ssize_t count =
                ::write(writeEnd.get(), text->data() + written, text->size() - written);
            if (count >= 0) {
                written += static_cast<std::size_t>(count);
            } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
                return false;
            } else if (errno != EINTR) {
                return true;
            }
        }
        return true;
    }

    /// Writable when there is something to do again. Owned by the transfer.
    [[nodiscard]] int descriptor() const { return writeEnd.get(); }

private:
    SharedText text;
    std::size_t written = 0;
    UniqueFd writeEnd;
};

struct TextTransfers::PendingTransfer
{
    Transfer transfer;
    DescriptorNotifier notifier;
};

TextTransfers::TextTransfers() = default;
TextTransfers::~TextTransfers() = default;

void TextTransfers::start(SharedText text, UniqueFd writeEnd)
{
    Transfer transfer(std::move(text), std::move(writeEnd));
    if (transfer.advance()) {
        return;
    }
    if (list.size() == maxTransfers) {
        list.pop_front();
    }
    const auto pending = list.insert(list.end(), PendingTransfer{std::move(transfer), nullptr});
    pending->notifier = makeDescriptorNotifier(
        pending->transfer.descriptor(), QSocketNotifier::Write, [this, pending] {
            if (pending->transfer.advance()) {
                list.erase(pending);
            }
        });
}

} // namespace orlimo
