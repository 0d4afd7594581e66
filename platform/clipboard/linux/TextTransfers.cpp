#include "platform/clipboard/linux/TextTransfers.h"

#include "platform/clipboard/linux/DescriptorNotifier.h"
#include "platform/clipboard/linux/TextTransfer.h"

#include <utility>

namespace orlimo {

struct TextTransfers::Waiting
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
    if (list.size() == most) {
        list.pop_front();
    }
    const auto waiting = list.insert(list.end(), Waiting{std::move(transfer), nullptr});
    waiting->notifier = makeDescriptorNotifier(
        waiting->transfer.descriptor(), QSocketNotifier::Write, [this, waiting] {
            if (waiting->transfer.advance()) {
                list.erase(waiting);
            }
        });
}

} // namespace orlimo
