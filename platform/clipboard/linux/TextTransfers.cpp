#include "platform/clipboard/linux/TextTransfers.h"

#include "platform/clipboard/linux/DescriptorNotifier.h"
#include "platform/clipboard/linux/TextTransfer.h"

#include <utility>

namespace orlimo {

struct TextTransfers::PendingTransfer
{
    TextTransfer transfer;
    DescriptorNotifier notifier;
};

TextTransfers::TextTransfers() = default;
TextTransfers::~TextTransfers() = default;

void TextTransfers::start(SharedText text, UniqueFd writeEnd)
{
    TextTransfer transfer(std::move(text), std::move(writeEnd));
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
