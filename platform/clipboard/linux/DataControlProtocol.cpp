#include "platform/clipboard/linux/DataControlProtocol.h"

#include <wayland-client-protocol.h>

namespace orlimo {

namespace {

/// What differs under the prefix "ext". A signature has one letter for each argument: n a new
/// object, o an object, s a string, h a descriptor; ? marks a nullable one, and a leading number is
/// the version that introduced the message.
struct ExtNames
{
    static constexpr int latestVersion = 1;
    static constexpr const char* manager = "ext_data_control_manager_v1";
    static constexpr const char* device = "ext_data_control_device_v1";
    static constexpr const char* source = "ext_data_control_source_v1";
    static constexpr const char* offer = "ext_data_control_offer_v1";
    static constexpr const char* primarySelection = "?o";
};

struct ZwlrNames
{
    static constexpr int latestVersion = 2;
    static constexpr const char* manager = "zwlr_data_control_manager_v1";
    static constexpr const char* device = "zwlr_data_control_device_v1";
    static constexpr const char* source = "zwlr_data_control_source_v1";
    static constexpr const char* offer = "zwlr_data_control_offer_v1";
    static constexpr const char* primarySelection = "2?o";
};

template <std::size_t count> using Types = std::array<const wl_interface*, count>;
template <std::size_t count> using Messages = std::array<wl_message, count>;

/// The library takes the types as non-const and never writes to them.
template <std::size_t count>
constexpr wl_message message(const char* name, const char* signature, const Types<count>& types)
{
    return {name, signature, const_cast<const wl_interface**>(types.data())};
}

template <std::size_t requestCount, std::size_t eventCount>
constexpr wl_interface interface(
    const char* name,
    int version,
    const Messages<requestCount>& requests,
    const Messages<eventCount>& events)
{
    return {
        name,
        version,
        static_cast<int>(requestCount),
        requestCount == 0 ? nullptr : requests.data(),
        static_cast<int>(eventCount),
        eventCount == 0 ? nullptr : events.data()};
}

/// The four interfaces under one prefix. Constants without a destructor, because objects of a
/// connection that is closed during exit still refer to them.
template <typename Names> struct Tables
{
    static const wl_interface manager;
    static const wl_interface device;
    static const wl_interface source;
    static const wl_interface offer;

    static constexpr Types<2> noObjects{nullptr, nullptr};
    static constexpr Types<1> newSource{&source};
    static constexpr Types<2> newDeviceOfSeat{&device, &wl_seat_interface};
    static constexpr Types<1> someSource{&source};
    static constexpr Types<1> someOffer{&offer};

    static constexpr Messages<3> managerRequests{
        message("create_data_source", "n", newSource),
        message("get_data_device", "no", newDeviceOfSeat),
        message("destroy", "", noObjects)};
    static constexpr Messages<0> managerEvents{};

    static constexpr Messages<3> deviceRequests{
        message("set_selection", "?o", someSource),
        message("destroy", "", noObjects),
        message("set_primary_selection", Names::primarySelection, someSource)};
    static constexpr Messages<4> deviceEvents{
        message("data_offer", "n", someOffer),
        message("selection", "?o", someOffer),
        message("finished", "", noObjects),
        message("primary_selection", Names::primarySelection, someOffer)};

    static constexpr Messages<2> sourceRequests{
        message("offer", "s", noObjects), message("destroy", "", noObjects)};
    static constexpr Messages<2> sourceEvents{
        message("send", "sh", noObjects), message("cancelled", "", noObjects)};

    static constexpr Messages<2> offerRequests{
        message("receive", "sh", noObjects), message("destroy", "", noObjects)};
    static constexpr Messages<1> offerEvents{message("offer", "s", noObjects)};
};

template <typename Names>
constexpr wl_interface Tables<Names>::manager =
    interface(Names::manager, Names::latestVersion, managerRequests, managerEvents);
template <typename Names>
constexpr wl_interface Tables<Names>::device =
    interface(Names::device, Names::latestVersion, deviceRequests, deviceEvents);
template <typename Names>
constexpr wl_interface
    Tables<Names>::source = interface(Names::source, 1, sourceRequests, sourceEvents);
template <typename Names>
constexpr wl_interface
    Tables<Names>::offer = interface(Names::offer, 1, offerRequests, offerEvents);

template <typename Names> constexpr DataControlProtocol protocol() noexcept
{
    using Named = Tables<Names>;
    return {Named::manager, Named::device, Named::source, Named::offer};
}

} // namespace

constinit const DataControlProtocol extDataControl = protocol<ExtNames>();
constinit const DataControlProtocol zwlrDataControl = protocol<ZwlrNames>();
constinit const std::array<const DataControlProtocol*, 2> dataControlProtocols{
    &extDataControl, &zwlrDataControl};

} // namespace orlimo
