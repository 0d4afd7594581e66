#pragma once

#include "platform/clipboard/linux/DataControlProtocol.h"
#include "platform/files/UniqueFd.h"
#include "tests/platform/clipboard/linux/ListeningSocket.h"
#include "tests/platform/process/PipeReader.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <poll.h>

#include <wayland-server-core.h>
#include <wayland-server-protocol.h>

namespace orlimo {

/// A Wayland compositor that has seats with clipboards and nothing else, controlled by a test. Runs
/// on a thread of its own; what a call causes has been sent to the clients when it returns. Clients
/// still connected at the end are disconnected.
class ScriptedCompositor
{
public:
    struct Script
    {
        bool offersExt = true;
        bool offersZwlr = false;
        std::size_t seats = 1;
        std::uint32_t seatVersion = 7;
        /// Whether a client's text is cancelled when another text of the same client replaces it.
        bool cancelsReplaced = true;
    };

    enum class Kind { manager, device, source, offer, seat };

    /// Listens at `socket`, which must not exist.
    ScriptedCompositor(std::filesystem::path socket, const Script& how)
        : script(how)
        , path(std::move(socket))
    {
        // In the reverse order of preference, so that taking the first one is no solution.
        if (script.offersZwlr) {
            const auto& interface = zwlrDataControl.manager;
            wl_global_create(display, &interface, 2, this, &bindManager<zwlrDataControl>);
        }
        if (script.offersExt) {
            const auto& interface = extDataControl.manager;
            wl_global_create(display, &interface, 1, this, &bindManager<extDataControl>);
        }
        while (nextSeat < script.seats) {
            addSeat();
        }
        constexpr int backlog = 128;
        wl_display_add_socket_fd(display, listeningSocket(path, backlog).release());
        thread = std::thread([this] { serve(); });
    }

    ScriptedCompositor(const ScriptedCompositor&) = delete;
    ScriptedCompositor& operator=(const ScriptedCompositor&) = delete;

    ~ScriptedCompositor()
    {
        isStopped = true;
        resume();
        thread.join();
        wl_display_destroy_clients(display);
        wl_display_destroy(display);
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }

    /// The types that a client offers on a seat's clipboard, in its order; empty if none does.
    [[nodiscard]] std::vector<std::string> types(std::size_t seat = 0)
    {
        return run([&] { return typesOf(seats.at(seat).selection); });
    }

    /// Requests the text of the client that has the clipboard and returns the end to read it from;
    /// none if no client has it.
    [[nodiscard]] UniqueFd paste(const std::string& type = "text/plain", std::size_t seat = 0)
    {
        return run([&] {
            wl_resource* const source = seats.at(seat).selection;
            if (source == nullptr) {
                return UniqueFd();
            }
            TestPipe pipe;
            const int end = pipe.writeEnd.get();
            wl_resource_post_event(source, Protocol::SourceEvent::send, type.c_str(), end);
            return std::move(pipe.readEnd);
        });
    }

    /// Lets another program take the clipboard, or the primary selection.
    void takeSelection(std::size_t seat = 0)
    {
        run([&] {
            cancel(std::exchange(seats.at(seat).selection, nullptr));
            sendToAll(seats.at(seat), Protocol::DeviceEvent::selection, {"text/html"});
        });
    }
    void takePrimarySelection()
    {
        run([&] {
            sendToAll(seats.at(0), Protocol::DeviceEvent::primarySelection, {"text/html"});
        });
    }

    /// Announces one more seat, numbered in sequence.
    void addSeat()
    {
        run([this] {
            Seat& seat = seats[nextSeat];
            seat.compositor = this;
            seat.number = nextSeat++;
            const auto version = static_cast<int>(script.seatVersion);
            seat.global = wl_global_create(display, &wl_seat_interface, version, &seat, &bindSeat);
        });
    }

    /// Removes a seat and the clipboard objects that clients have of it.
    void removeSeat(std::size_t seat)
    {
        run([&] {
            finishDevicesOf(seats.at(seat));
            wl_global_destroy(seats.at(seat).global);
            seats.erase(seat);
        });
    }

    /// Ends the clipboard objects of the first seat, which stays.
    void finishDevices()
    {
        run([&] { finishDevicesOf(seats.at(0)); });
    }

    void disconnectClients()
    {
        run([this] { wl_display_destroy_clients(display); });
    }

    /// Sends each client a protocol error, which disconnects it.
    void postError()
    {
        run([this] {
            wl_client* client = nullptr;
            wl_client_for_each(client, wl_display_get_client_list(display))
            {
                wl_client_post_implementation_error(client, "the test says so");
            }
        });
    }

    /// Stops reading what clients send until `resume`. Calls are still carried out.
    void hold()
    {
        run([this] { isHeld = true; });
    }
    void resume()
    {
        isHeld = false;
        isHeld.notify_all();
    }

    /// How many objects of a kind the clients have at present.
    [[nodiscard]] std::size_t count(Kind kind)
    {
        return run([&] { return counts[kind]; });
    }
    /// How often a client has put something on a seat's clipboard.
    [[nodiscard]] std::size_t selections()
    {
        return run([this] { return selectionCount; });
    }

    /// The interface of each manager that was bound so far, which a client does once a connection.
    [[nodiscard]] std::vector<std::string> managers()
    {
        return run([this] { return managerInterfaces; });
    }

private:
    using Protocol = DataControlProtocol;

    struct Seat
    {
        ScriptedCompositor* compositor = nullptr;
        std::size_t number = 0;
        wl_global* global = nullptr;
        wl_resource* selection = nullptr; ///< a client's source
        std::set<wl_resource*> devices;
    };

    /// The data of a client's object.
    struct Object
    {
        ScriptedCompositor& compositor;
        Kind kind;
        const DataControlProtocol* protocol = nullptr;
        std::size_t seat = 0;
        std::vector<std::string> types{};
        bool isUsed = false;
    };

    /// Excludes the compositor's thread. What the clients have sent is handled first: where that
    /// thread gets no turn between many calls, their requests would fill the socket, and they would
    /// read no events any more.
    template <typename Task> std::invoke_result_t<Task> run(Task task)
    {
        const std::lock_guard guard(mutex);
        if (!isHeld) {
            wl_event_loop_dispatch(loop, 0);
        }
        const struct Flush
        {
            ~Flush() { wl_display_flush_clients(display); }
            wl_display* display;
        } flush{display};
        return task();
    }

    void serve()
    {
        pollfd readable{.fd = wl_event_loop_get_fd(loop), .events = POLLIN, .revents = 0};
        while (!isStopped) {
            isHeld.wait(true);
            constexpr int limit = 10; // milliseconds until it notices that it is stopped
            (void)::poll(&readable, 1, limit);
            run([] {});
        }
    }

    static Object& objectOf(wl_resource* resource)
    {
        return *static_cast<Object*>(wl_resource_get_user_data(resource));
    }

    static wl_resource* resourceIn(const wl_argument& argument)
    {
        // Each of the library's resources begins with its object.
        return reinterpret_cast<wl_resource*>(argument.o);
    }

    static std::vector<std::string> typesOf(wl_resource* source)
    {
        return source == nullptr ? std::vector<std::string>() : objectOf(source).types;
    }

    static void cancel(wl_resource* source)
    {
        if (source != nullptr) {
            wl_resource_post_event(source, Protocol::SourceEvent::cancelled);
        }
    }

    static wl_resource* make(
        wl_client* client,
        const wl_interface& interface,
        int version,
        std::uint32_t id,
        Object object)
    {
        wl_resource* const resource = wl_resource_create(client, &interface, version, id);
        if (resource == nullptr) {
            throw std::bad_alloc();
        }
        ++object.compositor.counts[object.kind];
        auto* const owned = new Object(std::move(object)); // deleted by `forget`
        wl_resource_set_dispatcher(resource, &dispatch, nullptr, owned, &forget);
        return resource;
    }

    static void forget(wl_resource* resource)
    {
        const std::unique_ptr<Object> object(&objectOf(resource));
        ScriptedCompositor& self = object->compositor;
        --self.counts[object->kind];
        for (auto& [number, seat] : self.seats) {
            seat.devices.erase(resource);
            if (seat.selection == resource) {
                seat.selection = nullptr;
                sendToAll(seat, Protocol::DeviceEvent::selection, {});
            }
        }
    }

    template <const DataControlProtocol& protocol>
    static void bindManager(wl_client* client, void* data, std::uint32_t version, std::uint32_t id)
    {
        auto& self = *static_cast<ScriptedCompositor*>(data);
        self.managerInterfaces.emplace_back(protocol.manager.name);
        const auto offered = static_cast<int>(version);
        make(client, protocol.manager, offered, id, {self, Kind::manager, &protocol});
    }

    static void bindSeat(wl_client* client, void* data, std::uint32_t version, std::uint32_t id)
    {
        const Seat& seat = *static_cast<Seat*>(data);
        const Object object{*seat.compositor, Kind::seat, nullptr, seat.number};
        const auto offered = static_cast<int>(version);
        wl_resource* const resource = make(client, wl_seat_interface, offered, id, object);
        wl_resource_post_event(resource, WL_SEAT_CAPABILITIES, 0U);
    }

    static int dispatch(
        const void* /*implementation*/,
        void* target,
        std::uint32_t request,
        const wl_message* /*message*/,
        wl_argument* arguments)
    {
        constexpr std::uint32_t seatRelease = 3;
        static const std::map<Kind, std::uint32_t> destroyRequests{
            {Kind::manager, Protocol::ManagerRequest::destroy},
            {Kind::device, Protocol::DeviceRequest::destroy},
            {Kind::source, Protocol::SourceRequest::destroy},
            {Kind::offer, Protocol::OfferRequest::destroy},
            {Kind::seat, seatRelease}};
        auto* const resource = static_cast<wl_resource*>(target);
        Object& object = objectOf(resource);
        if (request == destroyRequests.at(object.kind)) {
            wl_resource_destroy(resource);
        } else if (object.kind == Kind::manager) {
            object.compositor.managerRequest(resource, request, arguments);
        } else if (object.kind == Kind::device && request == Protocol::DeviceRequest::setSelection)
        {
            object.compositor.setSelection(resource, resourceIn(arguments[0]));
        } else if (object.kind == Kind::source && !object.isUsed) {
            object.types.emplace_back(arguments[0].s);
        } else {
            wl_resource_post_error(resource, 0, "a request that the program has no need of");
        }
        return 0;
    }

    void managerRequest(wl_resource* manager, std::uint32_t request, const wl_argument* arguments)
    {
        const auto& protocol = *objectOf(manager).protocol;
        wl_client* const client = wl_resource_get_client(manager);
        const int version = wl_resource_get_version(manager);
        const auto id = arguments[0].n;
        if (request == Protocol::ManagerRequest::createDataSource) {
            make(client, protocol.source, version, id, {*this, Kind::source, &protocol});
            return;
        }
        const std::size_t number = objectOf(resourceIn(arguments[1])).seat;
        wl_resource* const device =
            make(client, protocol.device, version, id, {*this, Kind::device, &protocol, number});
        const auto seat = seats.find(number);
        if (seat == seats.end()) {
            wl_resource_post_event(device, Protocol::DeviceEvent::finished);
            return;
        }
        seat->second.devices.insert(device);
        sendTo(device, Protocol::DeviceEvent::selection, typesOf(seat->second.selection));
    }

    void setSelection(wl_resource* device, wl_resource* source)
    {
        if (source == nullptr || std::exchange(objectOf(source).isUsed, true)) {
            wl_resource_post_error(device, 1, "a source is needed that was not used before");
            return;
        }
        const auto found = seats.find(objectOf(device).seat);
        if (found == seats.end() || !found->second.devices.contains(device)) {
            cancel(source);
            return;
        }
        ++selectionCount;
        wl_resource* const replaced = std::exchange(found->second.selection, source);
        if (script.cancelsReplaced) {
            cancel(replaced);
        }
        sendToAll(found->second, Protocol::DeviceEvent::selection, objectOf(source).types);
    }

    static void finishDevicesOf(Seat& seat)
    {
        for (wl_resource* const device : std::exchange(seat.devices, {})) {
            wl_resource_post_event(device, Protocol::DeviceEvent::finished);
        }
        seat.selection = nullptr;
    }

    static void
    sendToAll(const Seat& seat, std::uint32_t event, const std::vector<std::string>& offered)
    {
        for (wl_resource* const device : seat.devices) {
            sendTo(device, event, offered);
        }
    }

    /// Sends a client the new content of a selection; without types there is none.
    static void
    sendTo(wl_resource* device, std::uint32_t event, const std::vector<std::string>& offered)
    {
        if (offered.empty()) {
            wl_resource_post_event(device, event, nullptr);
            return;
        }
        const Object& object = objectOf(device);
        wl_resource* const offer = make(
            wl_resource_get_client(device),
            object.protocol->offer,
            wl_resource_get_version(device),
            0,
            {object.compositor, Kind::offer, object.protocol});
        wl_resource_post_event(device, Protocol::DeviceEvent::dataOffer, offer);
        for (const std::string& type : offered) {
            wl_resource_post_event(offer, Protocol::OfferEvent::offer, type.c_str());
        }
        wl_resource_post_event(device, event, offer);
    }

    const Script script;
    const std::filesystem::path path;
    wl_display* display = wl_display_create();
    wl_event_loop* loop = wl_display_get_event_loop(display);
    std::mutex mutex;
    std::atomic<bool> isStopped = false;
    std::atomic<bool> isHeld = false;
    std::map<std::size_t, Seat> seats;
    std::size_t nextSeat = 0;
    std::map<Kind, std::size_t> counts;
    std::size_t selectionCount = 0;
    std::vector<std::string> managerInterfaces;
    std::thread thread;
};

} // namespace orlimo
