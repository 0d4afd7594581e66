#include "tests/platform/clipboard/linux/ScriptedCompositor.h"

#include "tests/platform/clipboard/linux/ListeningSocket.h"
#include "tests/support/process/OpenPipe.h"

#include <memory>
#include <new>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

#include <wayland-server-protocol.h>

namespace orlimo {

namespace {

using Protocol = DataControlProtocol;

const std::vector<std::string> foreignTypes{"text/html", "text/plain", "image/png"};

wl_resource* resourceIn(const wl_argument& argument)
{
    // Each of the library's resources begins with its object.
    return reinterpret_cast<wl_resource*>(argument.o);
}

void cancel(wl_resource* source)
{
    if (source != nullptr) {
        wl_resource_post_event(source, Protocol::SourceEvent::cancelled);
    }
}

} // namespace

/// Runs `task` on the compositor's thread without waiting for its result.
template <typename Task> auto ScriptedCompositor::begin(Task task)
{
    struct Flush
    {
        ~Flush() { wl_display_flush_clients(display); }
        wl_display* display;
    };
    const auto packaged = std::make_shared<std::packaged_task<decltype(task())()>>([this, task] {
        const Flush flush{display};
        return task();
    });
    auto result = packaged->get_future();
    {
        const std::lock_guard guard(mutex);
        tasks.emplace_back([packaged] { (*packaged)(); });
    }
    (void)::eventfd_write(wakeUp.get(), 1);
    return result;
}

template <typename Task> auto ScriptedCompositor::run(Task task)
{
    return begin(std::move(task)).get();
}

ScriptedCompositor::ScriptedCompositor(const std::filesystem::path& socket, const Script& how)
    : script(how)
    , path(socket)
    , display(wl_display_create())
    , loop(wl_display_get_event_loop(display))
    , wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    const auto runTasksOf = [](int descriptor, std::uint32_t /*mask*/, void* compositor) {
        eventfd_t ignored = 0;
        (void)::eventfd_read(descriptor, &ignored);
        static_cast<ScriptedCompositor*>(compositor)->runTasks();
        return 0;
    };
    wakeUpSource = wl_event_loop_add_fd(loop, wakeUp.get(), WL_EVENT_READABLE, runTasksOf, this);
    // In the reverse order of preference, so that taking the first one is no solution.
    if (script.offersZwlr) {
        wl_global_create(display, &zwlrDataControl.manager, 2, this, &bindManager<zwlrDataControl>);
    }
    if (script.offersExt) {
        wl_global_create(display, &extDataControl.manager, 1, this, &bindManager<extDataControl>);
    }
    while (nextSeat < script.seats) {
        addSeatNow();
    }
    constexpr int backlog = 128;
    wl_display_add_socket_fd(display, listeningSocket(socket, backlog).release());
    thread = std::thread([this] {
        while (!isStopped) {
            wl_display_flush_clients(display);
            wl_event_loop_dispatch(loop, -1);
        }
    });
}

ScriptedCompositor::~ScriptedCompositor()
{
    resume();
    run([this] { isStopped = true; });
    thread.join();
    wl_display_destroy_clients(display);
    wl_event_source_remove(wakeUpSource);
    wl_display_destroy(display);
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

void ScriptedCompositor::runTasks()
{
    std::unique_lock guard(mutex);
    while (!tasks.empty()) {
        const auto task = std::move(tasks.front());
        tasks.pop_front();
        guard.unlock();
        task();
        guard.lock();
    }
}

std::vector<std::string> ScriptedCompositor::types(std::size_t seat)
{
    return run([&] {
        wl_resource* const source = seats.at(seat).selection;
        return source == nullptr ? std::vector<std::string>() : objectOf(source).types;
    });
}

UniqueFd ScriptedCompositor::paste(const std::string& type, std::size_t seat)
{
    return run([&] { return pasteNow(type, seat); });
}

UniqueFd ScriptedCompositor::pasteNow(const std::string& type, std::size_t seat)
{
    wl_resource* const source = seats.at(seat).selection;
    if (source == nullptr) {
        return {};
    }
    const auto ends = openPipe();
    const UniqueFd writeEnd(ends[1]);
    wl_resource_post_event(source, Protocol::SourceEvent::send, type.c_str(), writeEnd.get());
    return UniqueFd(ends[0]);
}

void ScriptedCompositor::takeSelection(std::size_t seat)
{
    run([&] {
        cancel(std::exchange(seats.at(seat).selection, nullptr));
        sendToAll(seats.at(seat), Protocol::DeviceEvent::selection, foreignTypes);
    });
}

void ScriptedCompositor::takePrimarySelection(std::size_t seat)
{
    run([&] { sendToAll(seats.at(seat), Protocol::DeviceEvent::primarySelection, foreignTypes); });
}

void ScriptedCompositor::addSeat()
{
    run([this] { addSeatNow(); });
}

void ScriptedCompositor::addSeatNow()
{
    const std::size_t number = nextSeat++;
    Seat& seat = seats[number];
    seat.compositor = this;
    seat.number = number;
    const auto version = static_cast<int>(script.seatVersion);
    seat.global = wl_global_create(display, &wl_seat_interface, version, &seat, &bindSeat);
}

void ScriptedCompositor::removeSeat(std::size_t seat)
{
    run([&] {
        finishDevicesNow(seat);
        wl_global_destroy(seats.at(seat).global);
        seats.erase(seat);
    });
}

void ScriptedCompositor::finishDevices(std::size_t seat)
{
    run([&] { finishDevicesNow(seat); });
}

void ScriptedCompositor::finishDevicesNow(std::size_t number)
{
    Seat& seat = seats.at(number);
    for (wl_resource* const device : std::exchange(seat.devices, {})) {
        wl_resource_post_event(device, Protocol::DeviceEvent::finished);
    }
    seat.selection = nullptr;
}

void ScriptedCompositor::disconnectClients()
{
    run([this] { wl_display_destroy_clients(display); });
}

void ScriptedCompositor::postError()
{
    run([this] {
        for (wl_resource* const manager : managerResources) {
            wl_resource_post_error(manager, 0, "the test says so");
        }
    });
}

void ScriptedCompositor::hold()
{
    if (!std::exchange(isHeld, true)) {
        (void)begin([this] { release.acquire(); });
    }
}

void ScriptedCompositor::resume()
{
    if (std::exchange(isHeld, false)) {
        release.release();
    }
}

UniqueFd ScriptedCompositor::resumeWithPaste()
{
    auto end = begin([this] { return pasteNow("text/plain", 0); });
    resume();
    return end.get();
}

std::size_t ScriptedCompositor::count(Kind kind)
{
    return run([&] { return counts[kind]; });
}

std::size_t ScriptedCompositor::selections()
{
    return run([this] { return selectionCount; });
}

std::vector<std::string> ScriptedCompositor::managers()
{
    return run([this] { return managerInterfaces; });
}

ScriptedCompositor::Object& ScriptedCompositor::objectOf(wl_resource* resource)
{
    return *static_cast<Object*>(wl_resource_get_user_data(resource));
}

wl_resource* ScriptedCompositor::make(
    wl_client* client, const wl_interface& interface, int version, std::uint32_t id, Object object)
{
    wl_resource* const resource = wl_resource_create(client, &interface, version, id);
    if (resource == nullptr) {
        throw std::bad_alloc();
    }
    ++counts[object.kind];
    auto* const owned = new Object(std::move(object)); // deleted by `forget`
    wl_resource_set_dispatcher(resource, &dispatch, nullptr, owned, &forget);
    return resource;
}

void ScriptedCompositor::forget(wl_resource* resource)
{
    const std::unique_ptr<Object> object(&objectOf(resource));
    ScriptedCompositor& self = object->compositor;
    --self.counts[object->kind];
    std::erase(self.managerResources, resource);
    for (auto& [number, seat] : self.seats) {
        seat.devices.erase(resource);
        if (seat.selection == resource) {
            seat.selection = nullptr;
            self.sendToAll(seat, Protocol::DeviceEvent::selection, {});
        }
    }
}

template <const DataControlProtocol& protocol>
void ScriptedCompositor::bindManager(
    wl_client* client, void* data, std::uint32_t version, std::uint32_t id)
{
    auto& self = *static_cast<ScriptedCompositor*>(data);
    self.managerInterfaces.emplace_back(protocol.manager.name);
    self.managerResources.push_back(self.make(
        client, protocol.manager, static_cast<int>(version), id, {self, Kind::manager, &protocol}));
}

void ScriptedCompositor::bindSeat(
    wl_client* client, void* data, std::uint32_t version, std::uint32_t id)
{
    const Seat& seat = *static_cast<Seat*>(data);
    ScriptedCompositor& self = *seat.compositor;
    wl_resource* const resource = self.make(
        client,
        wl_seat_interface,
        static_cast<int>(version),
        id,
        {self, Kind::seat, nullptr, seat.number});
    wl_resource_post_event(resource, WL_SEAT_CAPABILITIES, 0U);
}

int ScriptedCompositor::dispatch(
    const void* /*implementation*/,
    void* target,
    std::uint32_t request,
    const wl_message* /*message*/,
    wl_argument* arguments)
{
    constexpr std::uint32_t seatRelease = 3;
    auto* const resource = static_cast<wl_resource*>(target);
    Object& object = objectOf(resource);
    if ((object.kind == Kind::device && request == Protocol::DeviceRequest::destroy) ||
        (object.kind == Kind::source && request == Protocol::SourceRequest::destroy) ||
        (object.kind == Kind::offer && request == Protocol::OfferRequest::destroy) ||
        (object.kind == Kind::seat && request == seatRelease))
    {
        wl_resource_destroy(resource);
    } else if (object.kind == Kind::manager) {
        object.compositor.managerRequest(resource, request, arguments);
    } else if (object.kind == Kind::device && request == Protocol::DeviceRequest::setSelection) {
        object.compositor.setSelection(resource, resourceIn(arguments[0]));
    } else if (object.kind == Kind::source && !object.isUsed) {
        object.types.emplace_back(arguments[0].s);
    } else {
        wl_resource_post_error(resource, 0, "a request that the program has no need of");
    }
    return 0;
}

void ScriptedCompositor::managerRequest(
    wl_resource* manager, std::uint32_t request, const wl_argument* arguments)
{
    const auto& protocol = *objectOf(manager).protocol;
    wl_client* const client = wl_resource_get_client(manager);
    const int version = wl_resource_get_version(manager);
    if (request == Protocol::ManagerRequest::createDataSource) {
        make(client, protocol.source, version, arguments[0].n, {*this, Kind::source, &protocol});
    } else if (request == Protocol::ManagerRequest::getDataDevice) {
        const std::size_t number = objectOf(resourceIn(arguments[1])).seat;
        wl_resource* const device = make(
            client,
            protocol.device,
            version,
            arguments[0].n,
            {*this, Kind::device, &protocol, number});
        const auto seat = seats.find(number);
        if (seat == seats.end()) {
            wl_resource_post_event(device, Protocol::DeviceEvent::finished);
            return;
        }
        seat->second.devices.insert(device);
        wl_resource* const selection = seat->second.selection;
        sendTo(
            device,
            Protocol::DeviceEvent::selection,
            selection == nullptr ? std::vector<std::string>() : objectOf(selection).types);
    } else {
        wl_resource_destroy(manager);
    }
}

void ScriptedCompositor::setSelection(wl_resource* device, wl_resource* source)
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

void ScriptedCompositor::sendToAll(
    const Seat& seat, std::uint32_t event, const std::vector<std::string>& offered)
{
    for (wl_resource* const device : seat.devices) {
        sendTo(device, event, offered);
    }
}

/// Sends a client the new content of a selection; without types there is none.
void ScriptedCompositor::sendTo(
    wl_resource* device, std::uint32_t event, const std::vector<std::string>& offered)
{
    if (offered.empty()) {
        wl_resource_post_event(device, event, nullptr);
        return;
    }
    const auto& protocol = *objectOf(device).protocol;
    wl_resource* const offer = make(
        wl_resource_get_client(device),
        protocol.offer,
        wl_resource_get_version(device),
        0,
        {*this, Kind::offer, &protocol});
    wl_resource_post_event(device, Protocol::DeviceEvent::dataOffer, offer);
    for (const std::string& type : offered) {
        wl_resource_post_event(offer, Protocol::OfferEvent::offer, type.c_str());
    }
    wl_resource_post_event(device, event, offer);
}

} // namespace orlimo
