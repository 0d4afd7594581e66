#include "platform/clipboard/linux/DataControlDevice.h"

#include <algorithm>
#include <utility>

namespace orlimo {

namespace {

/// How many replaced texts a compositor may leave uncancelled before the oldest is withdrawn.
constexpr std::size_t mostReplaced = 64;

/// The proxy behind an argument that is an object; null when it is absent or already given up.
wl_proxy* proxyIn(const wl_argument& argument)
{
    // Each object of the library begins with its proxy.
    return reinterpret_cast<wl_proxy*>(argument.o);
}

} // namespace

DataControlDevice::DataControlDevice(
    const WaylandProxy& dataControlManager,
    const DataControlProtocol& namesOfAll,
    WaylandProxy seatOfClipboard,
    TextTransfers& readers,
    std::function<void()> takenOver)
    : manager(dataControlManager)
    , protocol(namesOfAll)
    , transfers(readers)
    , whenTakenOver(std::move(takenOver))
    , seat(std::move(seatOfClipboard))
{
    listen();
}

void DataControlDevice::setText(const SharedText& text)
{
    if (!device) {
        listen();
    }
    auto source = std::make_unique<DataControlSource>(
        manager, protocol, text, transfers, [this](const DataControlSource& cancelled) {
            forget(cancelled);
        });
    device.send(DataControlProtocol::DeviceRequest::setSelection, source->proxy());
    // Not withdrawn: a program may have asked for the old text before it was replaced.
    if (current) {
        replaced.push_back(std::move(current));
    }
    if (replaced.size() > mostReplaced) {
        replaced.pop_front();
    }
    current = std::move(source);
}

void DataControlDevice::receive(std::uint32_t event, const wl_argument* arguments)
{
    switch (event) {
    case DataControlProtocol::DeviceEvent::dataOffer:
        introduced.emplace_back(proxyIn(arguments[0]), DataControlProtocol::OfferRequest::destroy);
        break;
    case DataControlProtocol::DeviceEvent::selection:
        keepUntilReplaced(selection, arguments[0]);
        break;
    case DataControlProtocol::DeviceEvent::primarySelection:
        keepUntilReplaced(primarySelection, arguments[0]);
        break;
    case DataControlProtocol::DeviceEvent::finished:
        finish();
        break;
    default:
        break;
    }
}

/// Asks for the seat's clipboard.
void DataControlDevice::listen()
{
    device = WaylandProxy(
        manager.create(
            DataControlProtocol::ManagerRequest::getDataDevice, protocol.device, seat.get()),
        DataControlProtocol::DeviceRequest::destroy);
    device.deliverTo(*this);
}

/// Nobody reads the offer, but it must live until the next one takes its place: the compositor may
/// still speak of it.
void DataControlDevice::keepUntilReplaced(WaylandProxy& kept, const wl_argument& offer)
{
    kept = WaylandProxy();
    const auto found = std::ranges::find(introduced, proxyIn(offer), &WaylandProxy::get);
    if (found != introduced.end()) {
        kept = std::move(*found);
        introduced.erase(found);
    }
}

void DataControlDevice::forget(const DataControlSource& source)
{
    if (current.get() == &source) {
        current.reset();
        whenTakenOver();
        return;
    }
    std::erase_if(replaced, [&](const auto& other) { return other.get() == &source; });
}

/// The compositor has ended the object, mostly because the seat goes.
void DataControlDevice::finish()
{
    introduced.clear();
    selection = WaylandProxy();
    primarySelection = WaylandProxy();
    current.reset();
    replaced.clear();
    device = WaylandProxy();
}

} // namespace orlimo
