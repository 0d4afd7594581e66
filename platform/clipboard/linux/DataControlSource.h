#pragma once

#include "platform/clipboard/linux/DataControlProtocol.h"
#include "platform/clipboard/linux/SharedText.h"
#include "platform/clipboard/linux/TextTransfers.h"
#include "platform/display/linux/WaylandProxy.h"

#include <cstdint>
#include <functional>

namespace orlimo {

/// One text on offer to a compositor, under each of the names that programs know plain text by, and
/// marked as a secret.
/// Can be put on one clipboard, once. Main thread.
class DataControlSource
{
public:
    /// Makes the object through `manager` and tells it what is on offer. Those who ask join the
    /// `readers`, which must outlive it; `cancelled` is called when no more readers will come,
    /// and may end the source.
    DataControlSource(
        const WaylandProxy& manager,
        const DataControlProtocol& protocol,
        SharedText offeredText,
        TextTransfers& textTransfers,
        std::function<void(DataControlSource&)> cancelled);
    DataControlSource(const DataControlSource&) = delete;
    DataControlSource& operator=(const DataControlSource&) = delete;
    ~DataControlSource() = default;

    /// The compositor's object; null when the connection is lost.
    [[nodiscard]] wl_proxy* proxy() const { return source.get(); }

    /// Takes the object's events.
    void receive(std::uint32_t event, const wl_argument* arguments);

private:
    SharedText text;
    TextTransfers& transfers;
    std::function<void(DataControlSource&)> onCancelled;
    WaylandProxy source;
};

} // namespace orlimo
