#pragma once

#include <array>
#include <cstdint>

#include <wayland-util.h>

namespace orlimo {

/// The Wayland protocol with which a program without a window, and so without the focus, reads and
/// sets the clipboard of a seat. It exists under two prefixes that differ in little but their
/// names. Constant data; any thread.
struct DataControlProtocol
{
    /// The requested version. Later ones only add the primary selection, which is left alone.
    static constexpr std::uint32_t version = 1;

    /// The requests and events of each interface, by their opcode.
    struct ManagerRequest
    {
        static constexpr std::uint32_t createDataSource = 0;
        static constexpr std::uint32_t getDataDevice = 1;
        static constexpr std::uint32_t destroy = 2;
    };
    struct DeviceRequest
    {
        static constexpr std::uint32_t setSelection = 0;
        static constexpr std::uint32_t destroy = 1;
        static constexpr std::uint32_t setPrimarySelection = 2;
    };
    struct DeviceEvent
    {
        static constexpr std::uint32_t dataOffer = 0;
        static constexpr std::uint32_t selection = 1;
        static constexpr std::uint32_t finished = 2;
        static constexpr std::uint32_t primarySelection = 3;
    };
    struct SourceRequest
    {
        static constexpr std::uint32_t offer = 0;
        static constexpr std::uint32_t destroy = 1;
    };
    struct SourceEvent
    {
        static constexpr std::uint32_t send = 0;
        static constexpr std::uint32_t cancelled = 1;
    };
    struct OfferRequest
    {
        static constexpr std::uint32_t receive = 0;
        static constexpr std::uint32_t destroy = 1;
    };
    struct OfferEvent
    {
        static constexpr std::uint32_t offer = 0;
    };

    const wl_interface& manager;
    const wl_interface& device;
    const wl_interface& source;
    const wl_interface& offer;
};

/// The standard protocol (staging/ext-data-control).
extern const DataControlProtocol extDataControl;

/// Its wlroots predecessor.
extern const DataControlProtocol zwlrDataControl;

/// Both, the preferred one first.
extern const std::array<const DataControlProtocol*, 2> dataControlProtocols;

} // namespace orlimo
