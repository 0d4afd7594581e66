#pragma once

#include "platform/clipboard/linux/DataControlProtocol.h"
#include "platform/clipboard/linux/DataControlSource.h"
#include "platform/clipboard/linux/TextTransfers.h"
#include "platform/display/linux/WaylandProxy.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace orlimo {

/// The clipboard of one seat. Main thread.
class DataControlDevice
{
public:
    /// For the clipboard of `clipboardSeat`. The manager and the transfers must outlive the device;
    /// `selectionLostHandler` is called each time another program has replaced our text.
    DataControlDevice(
        const WaylandProxy& dataControlManager,
        const DataControlProtocol& dataControlProtocol,
        WaylandProxy clipboardSeat,
        TextTransfers& textTransfers,
        std::function<void()> selectionLostHandler);
    DataControlDevice(const DataControlDevice&) = delete;
    DataControlDevice& operator=(const DataControlDevice&) = delete;
    ~DataControlDevice() = default;

    /// Writes the requests that put `text` on the clipboard.
    void setText(const SharedText& text);

    /// Handles the object's events.
    void receive(std::uint32_t event, const wl_argument* arguments);

private:
    void createDevice();
    void replaceOffer(WaylandProxy& storedOffer, const wl_argument& offer);
    void removeSource(const DataControlSource& source);
    void finish();

    const WaylandProxy& manager;
    const DataControlProtocol& protocol;
    TextTransfers& transfers;
    std::function<void()> onSelectionLost;
    WaylandProxy seat;
    WaylandProxy device;
    /// Offers that the compositor has not assigned to a selection yet.
    std::vector<WaylandProxy> pendingOffers;
    WaylandProxy selection;
    WaylandProxy primarySelection;
    std::unique_ptr<DataControlSource> current;
    /// Our own earlier texts, until the compositor cancels them.
    std::deque<std::unique_ptr<DataControlSource>> replaced;
};

} // namespace orlimo
