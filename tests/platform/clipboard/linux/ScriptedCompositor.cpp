#include "tests/platform/clipboard/linux/ScriptedCompositor.h"

#include "platform/clipboard/linux/DataControlProtocol.h"
#include "tests/platform/clipboard/linux/ListeningSocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <deque>
#include <future>
#include <map>
#include <mutex>
#include <new>
#include <set>
#include <system_error>
#include <type_traits>
#include <utility>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <wayland-server-core.h>
#include <wayland-server-protocol.h>

namespace orlimo {

namespace {

constexpr int listenBacklog = 128;
constexpr std::uint32_t seatRelease = 3;

const std::array<const char*, 3> foreignTypes{"text/html", "text/plain", "image/png"};

wl_resource* resourceIn(const wl_argument& argument)
{
    // Each resource of the library begins with its object.
    return reinterpret_cast<wl_resource*>(argument.o);
}

} // namespace

/// What happens on the compositor's thread, but for `run` and `stop`.
class ScriptedCompositor::Server
{
public:
    Server(const std::filesystem::path& socket, const Script& how)
        : script(how)
        , path(socket)
        , display(wl_display_create())
        , loop(wl_display_get_event_loop(display))
        , wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        wakeUpSource =
            wl_event_loop_add_fd(loop, wakeUp.get(), WL_EVENT_READABLE, &Server::runTasks, this);
        clientCreated.server = this;
        clientCreated.listener.notify = [](wl_listener* listener, void* /*client*/) {
            ++reinterpret_cast<Listener*>(listener)->server->connectionCount;
        };
        wl_display_add_client_created_listener(display, &clientCreated.listener);
        // Announced the other way round, for the choice must not be that of the first one.
        if (script.offersZwlr) {
            wl_global_create(
                display, &zwlrDataControl.manager, 2, this, &Server::bindManager<zwlrDataControl>);
        }
        if (script.offersExt) {
            wl_global_create(
                display, &extDataControl.manager, 1, this, &Server::bindManager<extDataControl>);
        }
        for (std::size_t seat = 0; seat < script.seats; ++seat) {
            addSeat();
        }
        wl_display_add_socket_fd(display, listeningSocket(socket, listenBacklog).release());
    }

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server()
    {
        wl_display_destroy_clients(display);
        wl_event_source_remove(wakeUpSource);
        wl_display_destroy(display);
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }

    void runForEver()
    {
        while (!isStopped) {
            wl_display_flush_clients(display);
            wl_event_loop_dispatch(loop, -1);
        }
    }

    /// Has the compositor's thread do something. Any other thread.
    void post(std::function<void()> task)
    {
        {
            const std::lock_guard guard(mutex);
            tasks.push_back(std::move(task));
        }
        (void)::eventfd_write(wakeUp.get(), 1);
    }

    /// The same, and waits for what comes of it.
    template <typename Task> auto run(Task task) { return begin(std::move(task)).get(); }

    /// The same without the wait.
    template <typename Task> auto begin(Task task)
    {
        using Result = decltype(task());
        const auto packaged = std::make_shared<std::packaged_task<Result()>>([this, task] {
            if constexpr (std::is_void_v<Result>) {
                task();
                wl_display_flush_clients(display);
            } else {
                Result result = task();
                wl_display_flush_clients(display);
                return result;
            }
        });
        auto result = packaged->get_future();
        post([packaged] { (*packaged)(); });
        return result;
    }

    void stop()
    {
        post([this] { isStopped = true; });
    }

    std::vector<std::string> types(std::size_t seat)
    {
        wl_resource* const source = seats.at(seat).selection;
        return source == nullptr ? std::vector<std::string>() : objectOf(source).types;
    }

    UniqueFd paste(const std::string& type, std::size_t seat)
    {
        wl_resource* const source = seats.at(seat).selection;
        if (source == nullptr) {
            return {};
        }
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        UniqueFd readEnd(ends[0]);
        const UniqueFd writeEnd(ends[1]);
        wl_resource_post_event(
            source, DataControlProtocol::SourceEvent::send, type.c_str(), writeEnd.get());
        ::fcntl(readEnd.get(), F_SETFL, O_NONBLOCK);
        return readEnd;
    }

    void takeSelection(std::size_t seat)
    {
        Seat& taken = seats.at(seat);
        cancel(std::exchange(taken.selection, nullptr));
        sendToAll(taken, DataControlProtocol::DeviceEvent::selection, foreign());
    }

    void takePrimarySelection(std::size_t seat)
    {
        sendToAll(seats.at(seat), DataControlProtocol::DeviceEvent::primarySelection, foreign());
    }

    void addSeat()
    {
        const std::size_t number = nextSeat++;
        Seat& seat = seats[number];
        seat.server = this;
        seat.number = number;
        seat.global = wl_global_create(
            display,
            &wl_seat_interface,
            static_cast<int>(script.seatVersion),
            &seat,
            &Server::bindSeat);
    }

    void removeSeat(std::size_t number)
    {
        finishDevices(number);
        wl_global_destroy(seats.at(number).global);
        seats.erase(number);
    }

    void finishDevices(std::size_t number)
    {
        Seat& seat = seats.at(number);
        for (wl_resource* const device : std::exchange(seat.devices, {})) {
            wl_resource_post_event(device, DataControlProtocol::DeviceEvent::finished);
        }
        seat.selection = nullptr;
    }

    void disconnectClients() { wl_display_destroy_clients(display); }

    void postError()
    {
        for (wl_resource* const manager : managerResources) {
            wl_resource_post_error(manager, 0, "the test says so");
        }
    }

    std::map<Kind, std::size_t> counts;
    std::size_t requestCount = 0;
    std::size_t selectionCount = 0;
    std::size_t connectionCount = 0;
    std::vector<std::string> managerInterfaces;

private:
    struct Seat
    {
        Server* server = nullptr;
        std::size_t number = 0;
        wl_global* global = nullptr;
        wl_resource* selection = nullptr; ///< a client's source
        std::set<wl_resource*> devices;
    };

    /// What is behind a client's object.
    struct Object
    {
        Server& server;
        Kind kind;
        const DataControlProtocol* protocol;
        std::size_t seat = 0;
        std::vector<std::string> types{};
        bool isUsed = false;
    };

    struct Listener
    {
        wl_listener listener{};
        Server* server = nullptr;
    };

    static Object& objectOf(wl_resource* resource)
    {
        return *static_cast<Object*>(wl_resource_get_user_data(resource));
    }

    static int runTasks(int descriptor, std::uint32_t /*mask*/, void* data)
    {
        eventfd_t ignored = 0;
        (void)::eventfd_read(descriptor, &ignored);
        static_cast<Server*>(data)->runTasks();
        return 0;
    }

    void runTasks()
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

    wl_resource* make(
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
        ++counts[object.kind];
        wl_resource_set_dispatcher(
            resource,
            &Server::dispatch,
            nullptr,
            new Object(std::move(object)), // taken back when the resource goes
            &Server::forget);
        return resource;
    }

    static void forget(wl_resource* resource)
    {
        const std::unique_ptr<Object> object(&objectOf(resource));
        Server& server = object->server;
        --server.counts[object->kind];
        std::erase(server.managerResources, resource);
        for (auto& [number, seat] : server.seats) {
            seat.devices.erase(resource);
            if (seat.selection == resource) {
                seat.selection = nullptr;
                server.sendToAll(seat, DataControlProtocol::DeviceEvent::selection, {});
            }
        }
    }

    template <const DataControlProtocol& protocol>
    static void bindManager(wl_client* client, void* data, std::uint32_t version, std::uint32_t id)
    {
        Server& server = *static_cast<Server*>(data);
        server.managerInterfaces.emplace_back(protocol.manager.name);
        server.managerResources.push_back(server.make(
            client,
            protocol.manager,
            static_cast<int>(version),
            id,
            Object{server, Kind::manager, &protocol}));
    }

    static void bindSeat(wl_client* client, void* data, std::uint32_t version, std::uint32_t id)
    {
        const Seat& seat = *static_cast<Seat*>(data);
        wl_resource* const resource = seat.server->make(
            client,
            wl_seat_interface,
            static_cast<int>(version),
            id,
            Object{*seat.server, Kind::seat, nullptr, seat.number});
        wl_resource_post_event(resource, WL_SEAT_CAPABILITIES, 0U);
    }

    static int dispatch(
        const void* /*implementation*/,
        void* target,
        std::uint32_t request,
        const wl_message* /*message*/,
        wl_argument* arguments)
    {
        auto* const resource = static_cast<wl_resource*>(target);
        Server& server = objectOf(resource).server;
        ++server.requestCount;
        switch (objectOf(resource).kind) {
        case Kind::manager:
            server.managerRequest(resource, request, arguments);
            break;
        case Kind::device:
            server.deviceRequest(resource, request, arguments);
            break;
        case Kind::source:
            server.sourceRequest(resource, request, arguments);
            break;
        case Kind::offer:
            server.offerRequest(resource, request, arguments);
            break;
        case Kind::seat:
            if (request == seatRelease) {
                wl_resource_destroy(resource);
            }
            break;
        }
        return 0;
    }

    void managerRequest(wl_resource* manager, std::uint32_t request, const wl_argument* arguments)
    {
        const auto* const protocol = objectOf(manager).protocol;
        wl_client* const client = wl_resource_get_client(manager);
        const int version = wl_resource_get_version(manager);
        if (request == DataControlProtocol::ManagerRequest::createDataSource) {
            make(
                client,
                protocol->source,
                version,
                arguments[0].n,
                Object{*this, Kind::source, protocol});
        } else if (request == DataControlProtocol::ManagerRequest::getDataDevice) {
            const std::size_t number = objectOf(resourceIn(arguments[1])).seat;
            wl_resource* const device = make(
                client,
                protocol->device,
                version,
                arguments[0].n,
                Object{*this, Kind::device, protocol, number});
            const auto seat = seats.find(number);
            if (seat == seats.end()) {
                wl_resource_post_event(device, DataControlProtocol::DeviceEvent::finished);
                return;
            }
            seat->second.devices.insert(device);
            sendTo(device, DataControlProtocol::DeviceEvent::selection, typesOf(seat->second));
        } else {
            wl_resource_destroy(manager);
        }
    }

    void deviceRequest(wl_resource* device, std::uint32_t request, const wl_argument* arguments)
    {
        if (request == DataControlProtocol::DeviceRequest::setSelection) {
            setSelection(device, resourceIn(arguments[0]));
        } else if (request == DataControlProtocol::DeviceRequest::destroy) {
            wl_resource_destroy(device);
        } else {
            wl_resource_post_error(device, 0, "the primary selection is not to be touched");
        }
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
        sendToAll(
            found->second, DataControlProtocol::DeviceEvent::selection, typesOf(found->second));
    }

    static void
    sourceRequest(wl_resource* source, std::uint32_t request, const wl_argument* arguments)
    {
        if (request == DataControlProtocol::SourceRequest::destroy) {
            wl_resource_destroy(source);
        } else if (objectOf(source).isUsed) {
            wl_resource_post_error(source, 1, "a type after the source was used");
        } else {
            objectOf(source).types.emplace_back(arguments[0].s);
        }
    }

    static void
    offerRequest(wl_resource* offer, std::uint32_t request, const wl_argument* arguments)
    {
        if (request == DataControlProtocol::OfferRequest::destroy) {
            wl_resource_destroy(offer);
        } else {
            ::close(arguments[1].h);
        }
    }

    static void cancel(wl_resource* source)
    {
        if (source != nullptr) {
            wl_resource_post_event(source, DataControlProtocol::SourceEvent::cancelled);
        }
    }

    static std::vector<std::string> typesOf(const Seat& seat)
    {
        return seat.selection == nullptr ? std::vector<std::string>()
                                         : objectOf(seat.selection).types;
    }

    static std::vector<std::string> foreign() { return {foreignTypes.begin(), foreignTypes.end()}; }

    void sendToAll(const Seat& seat, std::uint32_t event, const std::vector<std::string>& offered)
    {
        for (wl_resource* const device : seat.devices) {
            sendTo(device, event, offered);
        }
    }

    /// Tells a client what is on a clipboard from now on; of no types, nothing.
    void sendTo(wl_resource* device, std::uint32_t event, const std::vector<std::string>& offered)
    {
        if (offered.empty()) {
            wl_resource_post_event(device, event, nullptr);
            return;
        }
        const auto* const protocol = objectOf(device).protocol;
        wl_resource* const offer = make(
            wl_resource_get_client(device),
            protocol->offer,
            wl_resource_get_version(device),
            0,
            Object{*this, Kind::offer, protocol});
        wl_resource_post_event(device, DataControlProtocol::DeviceEvent::dataOffer, offer);
        for (const std::string& type : offered) {
            wl_resource_post_event(offer, DataControlProtocol::OfferEvent::offer, type.c_str());
        }
        wl_resource_post_event(device, event, offer);
    }

    Script script;
    std::filesystem::path path;
    wl_display* display;
    wl_event_loop* loop;
    UniqueFd wakeUp;
    wl_event_source* wakeUpSource = nullptr;
    Listener clientCreated;
    std::mutex mutex;
    std::deque<std::function<void()>> tasks;
    bool isStopped = false;
    std::map<std::size_t, Seat> seats;
    std::size_t nextSeat = 0;
    std::vector<wl_resource*> managerResources;
};

ScriptedCompositor::ScriptedCompositor(const std::filesystem::path& socket, const Script& script)
    : server(std::make_unique<Server>(socket, script))
    , thread([this] { server->runForEver(); })
{}

ScriptedCompositor::~ScriptedCompositor()
{
    resume();
    server->stop();
    thread.join();
}

std::vector<std::string> ScriptedCompositor::types(std::size_t seat)
{
    return server->run([&] { return server->types(seat); });
}

UniqueFd ScriptedCompositor::paste(const std::string& type, std::size_t seat)
{
    return server->run([&] { return server->paste(type, seat); });
}

void ScriptedCompositor::takeSelection(std::size_t seat)
{
    server->run([&] { server->takeSelection(seat); });
}

void ScriptedCompositor::takePrimarySelection(std::size_t seat)
{
    server->run([&] { server->takePrimarySelection(seat); });
}

void ScriptedCompositor::addSeat()
{
    server->run([&] { server->addSeat(); });
}

void ScriptedCompositor::removeSeat(std::size_t seat)
{
    server->run([&] { server->removeSeat(seat); });
}

void ScriptedCompositor::finishDevices(std::size_t seat)
{
    server->run([&] { server->finishDevices(seat); });
}

void ScriptedCompositor::disconnectClients()
{
    server->run([&] { server->disconnectClients(); });
}

void ScriptedCompositor::postError()
{
    server->run([&] { server->postError(); });
}

void ScriptedCompositor::hold()
{
    if (!std::exchange(isHeld, true)) {
        server->post([this] { release.acquire(); });
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
    auto end = server->begin([this] { return server->paste("text/plain", 0); });
    resume();
    return end.get();
}

std::size_t ScriptedCompositor::count(Kind kind)
{
    return server->run([&] { return server->counts[kind]; });
}

std::size_t ScriptedCompositor::requests()
{
    return server->run([&] { return server->requestCount; });
}

std::size_t ScriptedCompositor::selections()
{
    return server->run([&] { return server->selectionCount; });
}

std::size_t ScriptedCompositor::connections()
{
    return server->run([&] { return server->connectionCount; });
}

std::vector<std::string> ScriptedCompositor::managers()
{
    return server->run([&] { return server->managerInterfaces; });
}

} // namespace orlimo
