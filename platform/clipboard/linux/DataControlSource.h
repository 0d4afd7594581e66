#pragma once

#include "platform/clipboard/linux/DataControlProtocol.h"
#include "platform/clipboard/linux/TextTransfers.h"
#include "platform/display/linux/WaylandProxy.h"

#include <cstdint>
#include <functional>

namespace orlimo {

/// One text offered to a compositor under each of the usual type names of plain text, and marked as
/// a secret. Can be put on one clipboard, once. Main thread.
class DataControlSource
{
public:
    /// Creates the object through `manager` and offers its types. Requests for the text go to
    /// `textTransfers`, which must outlive the source; `cancelled` is called once no more requests
    /// will come, and may destroy the source.
    DataControlSource(
        const WaylandProxy& manager,
        const DataControlProtocol& protocol,
        SharedText offeredText,
        TextTransfers& textTransfers,
        std::function<void(DataControlSource&)> cancelled);
    DataControlSource(const DataControlSource&) = delete;
    DataControlSource& operator=(const DataControlSource&) = delete;
    ~DataControlSource() = default;

    /// The compositor's object; null if the connection is lost.
    [[nodiscard]] wl_proxy* proxy() const { return source.get(); }

    /// Handles the object's events.
    void receive(std::uint32_t event, const wl_argument* arguments);

private:
    SharedText text;
    TextTransfers& transfers;
    std::function<void(DataControlSource&)> onCancelled;
    WaylandProxy source;
};

} // namespace orlimo
