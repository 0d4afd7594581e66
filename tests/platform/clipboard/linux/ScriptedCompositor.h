#pragma once

#include "platform/files/UniqueFd.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

namespace orlimo {

/// A Wayland compositor that has seats with clipboards and nothing else, and does what a test tells
/// it. Runs on a thread of its own; each call returns when the compositor has done it, and what it
/// says to its clients is then on its way. Clients that are still connected at the end are cut off.
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
        /// Whether a program is told that its text was replaced by a text of its own.
        bool cancelsReplaced = true;
    };

    /// The kinds of objects that clients have.
    enum class Kind { manager, device, source, offer, seat };

    /// Listens at `socket`, whose file must not exist.
    ScriptedCompositor(const std::filesystem::path& socket, const Script& script);
    explicit ScriptedCompositor(const std::filesystem::path& socket)
        : ScriptedCompositor(socket, Script{})
    {}
    ScriptedCompositor(const ScriptedCompositor&) = delete;
    ScriptedCompositor& operator=(const ScriptedCompositor&) = delete;
    ~ScriptedCompositor();

    /// The types that a client offers on a seat's clipboard, in its order; none when no client has
    /// it.
    [[nodiscard]] std::vector<std::string> types(std::size_t seat = 0);

    /// Asks the client that has the clipboard for its text, and returns where that can be read;
    /// none when no client has it.
    [[nodiscard]] UniqueFd paste(const std::string& type = "text/plain", std::size_t seat = 0);

    /// Another program takes the clipboard over.
    void takeSelection(std::size_t seat = 0);

    /// Another program takes the selection of the mouse button over.
    void takePrimarySelection(std::size_t seat = 0);

    /// Announces one more seat; its number is one more than the last one's.
    void addSeat();

    /// Takes a seat away, with the clipboards that clients have of it.
    void removeSeat(std::size_t seat);

    /// Ends the clipboards that clients have of a seat, which stays.
    void finishDevices(std::size_t seat = 0);

    /// Cuts all clients off.
    void disconnectClients();

    /// Tells each client that it has broken the protocol, which cuts it off.
    void postError();

    /// Stops taking and answering anything, until `resume`.
    void hold();
    void resume();

    /// Goes on, and asks for the text before it looks at what clients have said in the meantime.
    [[nodiscard]] UniqueFd resumeWithPaste();

    /// How many objects of a kind the clients have at present.
    [[nodiscard]] std::size_t count(Kind kind);

    /// How many requests have come for the objects above.
    [[nodiscard]] std::size_t requests();

    /// How often a client has put something on a seat's clipboard.
    [[nodiscard]] std::size_t selections();

    /// How many clients have connected so far.
    [[nodiscard]] std::size_t connections();

    /// The interface of each manager that was asked for so far.
    [[nodiscard]] std::vector<std::string> managers();

private:
    class Server;

    std::unique_ptr<Server> server;
    std::thread thread;
    std::binary_semaphore release{0};
    bool isHeld = false;
};

} // namespace orlimo
