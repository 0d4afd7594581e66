#pragma once

#include "platform/clipboard/linux/DataControlProtocol.h"
#include "platform/files/UniqueFd.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <mutex>
#include <semaphore>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <wayland-server-core.h>

namespace orlimo {

/// A Wayland compositor that has seats with clipboards and nothing else, controlled by a test. Runs
/// on a thread of its own; each call returns when the compositor has carried it out and has sent
/// the resulting events. Clients still connected at the end are disconnected.
class ScriptedCompositor
{
public:
    /// What it offers at the start.
    struct Script
    {
        bool offersExt = true;
        bool offersZwlr = false;
        std::size_t seats = 1;
        std::uint32_t seatVersion = 7;
        /// Whether a client's text is cancelled when another text of the same client replaces it.
        bool cancelsReplaced = true;
    };

    /// The kinds of objects that clients have.
    enum class Kind { manager, device, source, offer, seat };

    /// Listens at `socket`, which must not exist.
    ScriptedCompositor(const std::filesystem::path& socket, const Script& how);
    explicit ScriptedCompositor(const std::filesystem::path& socket)
        : ScriptedCompositor(socket, Script{})
    {}
    ScriptedCompositor(const ScriptedCompositor&) = delete;
    ScriptedCompositor& operator=(const ScriptedCompositor&) = delete;
    ~ScriptedCompositor();

    /// The types that a client offers on a seat's clipboard, in its order; empty if none does.
    [[nodiscard]] std::vector<std::string> types(std::size_t seat = 0);

    /// Requests the text of the client that has the clipboard and returns the end to read it from;
    /// none if no client has it.
    [[nodiscard]] UniqueFd paste(const std::string& type = "text/plain", std::size_t seat = 0);

    /// Lets another program take the clipboard, or the primary selection.
    void takeSelection(std::size_t seat = 0);
    void takePrimarySelection(std::size_t seat = 0);

    /// Announces one more seat, numbered in sequence.
    void addSeat();

    /// Removes a seat and the clipboard objects that clients have of it.
    void removeSeat(std::size_t seat);

    /// Ends the clipboard objects of a seat, which stays.
    void finishDevices(std::size_t seat = 0);

    void disconnectClients();

    /// Sends each client a protocol error, which disconnects it.
    void postError();

    /// Stops handling anything until `resume`.
    void hold();
    void resume();

    /// Resumes, and requests the text before handling what clients have sent in the meantime.
    [[nodiscard]] UniqueFd resumeWithPaste();

    /// How many objects of a kind the clients have at present.
    [[nodiscard]] std::size_t count(Kind kind);

    /// How often a client has put something on a seat's clipboard.
    [[nodiscard]] std::size_t selections();

    /// The interface of each manager that was bound so far, which a client does once a connection.
    [[nodiscard]] std::vector<std::string> managers();

private:
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

    template <typename Task> auto begin(Task task);
    template <typename Task> auto run(Task task);
    void runTasks();

    static Object& objectOf(wl_resource* resource);
    wl_resource* make(
        wl_client* client,
        const wl_interface& interface,
        int version,
        std::uint32_t id,
        Object object);
    static void forget(wl_resource* resource);
    template <const DataControlProtocol& protocol>
    static void bindManager(wl_client* client, void* data, std::uint32_t version, std::uint32_t id);
    static void bindSeat(wl_client* client, void* data, std::uint32_t version, std::uint32_t id);
    static int dispatch(
        const void* implementation,
        void* target,
        std::uint32_t request,
        const wl_message* message,
        wl_argument* arguments);
    void managerRequest(wl_resource* manager, std::uint32_t request, const wl_argument* arguments);
    void setSelection(wl_resource* device, wl_resource* source);
    [[nodiscard]] UniqueFd pasteNow(const std::string& type, std::size_t seat);
    void addSeatNow();
    void finishDevicesNow(std::size_t number);
    void sendToAll(const Seat& seat, std::uint32_t event, const std::vector<std::string>& offered);
    void sendTo(wl_resource* device, std::uint32_t event, const std::vector<std::string>& offered);

    const Script script;
    const std::filesystem::path path;
    wl_display* display;
    wl_event_loop* loop;
    UniqueFd wakeUp;
    wl_event_source* wakeUpSource;
    std::mutex mutex;
    std::deque<std::function<void()>> tasks;
    bool isStopped = false;
    std::map<std::size_t, Seat> seats;
    std::size_t nextSeat = 0;
    std::vector<wl_resource*> managerResources;
    std::map<Kind, std::size_t> counts;
    std::size_t selectionCount = 0;
    std::vector<std::string> managerInterfaces;
    std::binary_semaphore release{0};
    bool isHeld = false;
    std::thread thread;
};

} // namespace orlimo
