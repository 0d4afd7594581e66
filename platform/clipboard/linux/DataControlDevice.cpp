#include "platform/clipboard/linux/DataControlDevice.h"

#include <algorithm>
#include <utility>

namespace orlimo {

namespace {

/// How many replaced texts a compositor may leave uncancelled before the oldest is destroyed.
constexpr std::size_t maxReplaced = 64;

/// The proxy behind an object argument; null if it is absent or already destroyed.
wl_proxy* proxyIn(const wl_argument& argument)
{
    // Each of the library's objects begins with its proxy.
    return reinterpret_cast<wl_proxy*>(argument.o);
}

} // namespace

DataControlDevice::DataControlDevice(
    const WaylandProxy& dataControlManager,
    const DataControlProtocol& dataControlProtocol,
    WaylandProxy clipboardSeat,
    TextTransfers& textTransfers,
    std::function<void()> selectionLostHandler)
    : manager(dataControlManager)
    , protocol(dataControlProtocol)
    , transfers(textTransfers)
    , onSelectionLost(std::move(selectionLostHandler))
    , seat(std::move(clipboardSeat))
{
    createDevice();
}

void DataControlDevice::setText(const SharedText& text)
{
    if (!device) {
        createDevice();
    }
    auto source = std::make_unique<DataControlSource>(
        manager, protocol, text, transfers, [this](const DataControlSource& cancelled) {
            removeSource(cancelled);
        });
    device.send(DataControlProtocol::DeviceRequest::setSelection, source->proxy());
    // Kept: a program may have requested the old text before it was replaced.
    if (current) {
        replaced.push_back(std::move(current));
    }
    if (replaced.size() > maxReplaced) {
        replaced.pop_front();
    }
    current = std::move(source);
}

void DataControlDevice::receive(std::uint32_t event, const wl_argument* arguments)
{
    switch (event) {
    case DataControlProtocol::DeviceEvent::dataOffer:
        pendingOffers.emplace_back(
            proxyIn(arguments[0]), DataControlProtocol::OfferRequest::destroy);
        break;
    case DataControlProtocol::DeviceEvent::selection:
        replaceOffer(selection, arguments[0]);
        break;
    case DataControlProtocol::DeviceEvent::primarySelection:
        replaceOffer(primarySelection, arguments[0]);
        break;
    case DataControlProtocol::DeviceEvent::finished:
        finish();
        break;
    default:
        break;
    }
}

/// Requests the seat's clipboard object.
void DataControlDevice::createDevice()
{
    device = WaylandProxy(
        manager.create(
            DataControlProtocol::ManagerRequest::getDataDevice, protocol.device, seat.get()),
        DataControlProtocol::DeviceRequest::destroy);
    device.deliverTo(*this);
}

/// Nobody reads the offer, but it must live until the next one replaces it: the compositor may
/// still refer to it.
void DataControlDevice::replaceOffer(WaylandProxy& storedOffer, const wl_argument& offer)
{
    storedOffer = WaylandProxy();
    const auto found = std::ranges::find(pendingOffers, proxyIn(offer), &WaylandProxy::get);
    if (found != pendingOffers.end()) {
        storedOffer = std::move(*found);
        pendingOffers.erase(found);
    }
}

void DataControlDevice::removeSource(const DataControlSource& source)
{
    if (current.get() == &source) {
        current.reset();
        onSelectionLost();
        return;
    }
    std::erase_if(replaced, [&](const auto& other) { return other.get() == &source; });
}

/// The compositor has ended the object, usually because the seat is removed.
void DataControlDevice::finish()
{
    pendingOffers.clear();
    selection = WaylandProxy();
    primarySelection = WaylandProxy();
    current.reset();
    replaced.clear();
    device = WaylandProxy();
}

} // namespace orlimo
