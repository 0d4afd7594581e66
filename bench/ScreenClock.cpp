#include <chrono>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>
#include <xcb/xtest.h>

namespace orlimo {
namespace {

/// A moment of the clock that every process of the machine shares, in nanoseconds.
using Timestamp = std::int64_t;

Timestamp now()
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    constexpr Timestamp perSecond = 1'000'000'000;
    return time.tv_sec * perSecond + time.tv_nsec;
}

template <typename Reply> auto owned(Reply* reply)
{
    return std::unique_ptr<Reply, decltype(&std::free)>(reply, &std::free);
}

/// The display that DISPLAY names, seen by a client with no windows that can be seen.
class Screen
{
public:
    Screen()
        : opened(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(opened) != 0) {
            throw std::runtime_error("there is no X server");
        }
        screen = xcb_setup_roots_iterator(xcb_get_setup(opened)).data;
    }

    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen() { xcb_disconnect(opened); }

    [[nodiscard]] xcb_connection_t* connection() const { return opened; }
    [[nodiscard]] xcb_window_t root() const { return screen->root; }

    [[nodiscard]] xcb_atom_t atom(std::string_view name) const
    {
        const auto reply = owned(xcb_intern_atom_reply(
            opened,
            xcb_intern_atom(opened, 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr));
        return reply ? reply->atom : XCB_NONE;
    }

    /// Where selections are handed over.
    [[nodiscard]] xcb_window_t makeWindow() const
    {
        const xcb_window_t window = xcb_generate_id(opened);
        xcb_create_window(
            opened, 0, window, root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
        return window;
    }

    /// Every pixel of the screen.
    [[nodiscard]] std::vector<std::uint32_t> pixels() const
    {
        const auto reply = owned(xcb_get_image_reply(
            opened,
            xcb_get_image(
                opened,
                XCB_IMAGE_FORMAT_Z_PIXMAP,
                root(),
                0,
                0,
                screen->width_in_pixels,
                screen->height_in_pixels,
                ~std::uint32_t{0}),
            nullptr));
        if (!reply) {
            throw std::runtime_error("the screen cannot be read");
        }
        std::vector<std::uint32_t> read(
            static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) /
            sizeof(std::uint32_t));
        std::memcpy(
            read.data(), xcb_get_image_data(reply.get()), read.size() * sizeof(std::uint32_t));
        return read;
    }

    void roundTrip() const
    {
        (void)owned(xcb_get_input_focus_reply(opened, xcb_get_input_focus(opened), nullptr));
    }

    /// The next event within `limit`; none when there is none.
    [[nodiscard]] auto nextEvent(std::chrono::milliseconds limit) const
    {
        auto event = owned(xcb_poll_for_event(opened));
        const Timestamp end = now() + std::chrono::nanoseconds(limit).count();
        while (!event) {
            const Timestamp left = end - now();
            pollfd pollDescriptor{xcb_get_file_descriptor(opened), POLLIN, 0};
            constexpr Timestamp perMillisecond = 1'000'000;
            if (left <= 0 || xcb_connection_has_error(opened) != 0) {
                break;
            }
            (void)::poll(&pollDescriptor, 1, static_cast<int>(left / perMillisecond) + 1);
            event.reset(xcb_poll_for_event(opened));
        }
        return event;
    }

private:
    xcb_connection_t* opened;
    xcb_screen_t* screen = nullptr;
};

constexpr std::uint8_t eventType(const xcb_generic_event_t& event)
{
    constexpr std::uint8_t sentEventFlag = 0x80;
    return event.response_type & static_cast<std::uint8_t>(~sentEventFlag);
}

/// Until the server hangs up.
void forEachEvent(
    const Screen& screen, const std::function<void(const xcb_generic_event_t&, Timestamp)>& handler)
{
    while (const auto event = owned(xcb_wait_for_event(screen.connection()))) {
        handler(*event, now());
    }
}

/// Reads the clipboard each time it has a new owner, and says what it held and when that was read.
void followClipboard(const Screen& screen)
{
    const xcb_atom_t clipboard = screen.atom("CLIPBOARD");
    const xcb_atom_t text = screen.atom("UTF8_STRING");
    const xcb_window_t window = screen.makeWindow();
    xcb_connection_t* const connection = screen.connection();
    (void)owned(xcb_xfixes_query_version_reply(
        connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
    xcb_xfixes_select_selection_input(
        connection, window, clipboard, XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    const std::uint8_t ownerDidChange =
        xcb_get_extension_data(connection, &xcb_xfixes_id)->first_event +
        XCB_XFIXES_SELECTION_NOTIFY;
    screen.roundTrip();
    std::cout << "ready" << std::endl;
    forEachEvent(screen, [&](const xcb_generic_event_t& event, Timestamp /*moment*/) {
        if (eventType(event) == ownerDidChange) {
            xcb_convert_selection(connection, window, clipboard, text, text, XCB_CURRENT_TIME);
            xcb_flush(connection);
        } else if (eventType(event) == XCB_SELECTION_NOTIFY) {
            constexpr std::uint32_t limit = 1024;
            const auto reply = owned(xcb_get_property_reply(
                connection,
                xcb_get_property(connection, 1, window, text, XCB_GET_PROPERTY_TYPE_ANY, 0, limit),
                nullptr));
            const Timestamp read = now();
            const auto length = reply ? xcb_get_property_value_length(reply.get()) : 0;
            std::cout << read << ' '
                      << std::string_view(
                             length == 0
                                 ? ""
                                 : static_cast<const char*>(xcb_get_property_value(reply.get())),
                             static_cast<std::size_t>(length))
                      << std::endl;
        }
    });
}

/// Which process says that it has made a window; 0 when none does.
std::uint32_t processOf(const Screen& screen, xcb_window_t window, xcb_atom_t property)
{
    const auto reply = owned(xcb_get_property_reply(
        screen.connection(),
        xcb_get_property(screen.connection(), 0, window, property, XCB_ATOM_CARDINAL, 0, 1),
        nullptr));
    std::uint32_t process = 0;
    if (reply && xcb_get_property_value_length(reply.get()) == sizeof process) {
        std::memcpy(&process, xcb_get_property_value(reply.get()), sizeof process);
    }
    return process;
}

/// Says when a window is taken into another one, as a tray does with an icon, which window it is
/// and whose.
void followDocking(const Screen& screen)
{
    const xcb_atom_t process = screen.atom("_NET_WM_PID");
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(screen.connection(), screen.root(), XCB_CW_EVENT_MASK, &mask);
    screen.roundTrip();
    std::cout << "ready" << std::endl;
    forEachEvent(screen, [&](const xcb_generic_event_t& event, Timestamp timestamp) {
        if (eventType(event) == XCB_REPARENT_NOTIFY) {
            const auto& change = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
            if (change.parent != screen.root()) {
                std::cout << timestamp << ' ' << change.window << ' '
                          << processOf(screen, change.window, process) << std::endl;
            }
        }
    });
}

/// Where the middle of a window is on the screen, once that is so.
struct Position
{
    std::int16_t x = 0;
    std::int16_t y = 0;
};

std::optional<Position> centerOf(const Screen& screen, xcb_window_t window)
{
    xcb_connection_t* const connection = screen.connection();
    const auto size =
        owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    if (!size) {
        return std::nullopt;
    }
    const auto position = owned(xcb_translate_coordinates_reply(
        connection,
        xcb_translate_coordinates(
            connection,
            window,
            screen.root(),
            static_cast<std::int16_t>(size->width / 2),
            static_cast<std::int16_t>(size->height / 2)),
        nullptr));
    return position ? std::optional(Position{position->dst_x, position->dst_y}) : std::nullopt;
}

/// Clicks into windows and tells when what came of it was on the screen.
class Clicker
{
public:
    explicit Clicker(const Screen& targetScreen)
        : screen(targetScreen)
        , connection(targetScreen.connection())
    {
        (void)owned(xcb_damage_query_version_reply(
            connection, xcb_damage_query_version(connection, 1, 1), nullptr));
        (void)owned(xcb_test_get_version_reply(
            connection, xcb_test_get_version(connection, 2, 2), nullptr));
        xcb_damage_create(
            connection,
            xcb_generate_id(connection),
            screen.root(),
            XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        damageEvent = xcb_get_extension_data(connection, &xcb_damage_id)->first_event;
        screen.roundTrip();
    }

    /// Clicks the middle of `window` and says how many nanoseconds later the screen looked for the
    /// first time as it did in the end, but for a twentieth of what changed.
    std::string click(xcb_window_t window)
    {
        const auto position = centerOf(screen, window);
        if (!position) {
            return "no such window";
        }
        move(*position);
        const auto before = pixelsWhenStill();
        send(XCB_BUTTON_PRESS);
        const Timestamp clicked = now();
        send(XCB_BUTTON_RELEASE);
        const auto frames = framesUntilStill();
        if (frames.empty()) {
            return "nothing changed";
        }
        return describe(before, clicked, frames);
    }

private:
    struct Frame
    {
        Timestamp timestamp = 0;
        std::vector<std::uint32_t> pixels;
    };

    void move(const Position& position) const
    {
        xcb_test_fake_input(
            connection,
            XCB_MOTION_NOTIFY,
            0,
            XCB_CURRENT_TIME,
            screen.root(),
            position.x,
            position.y,
            0);
        screen.roundTrip();
    }

    void send(std::uint8_t kind) const
    {
        constexpr std::uint8_t left = 1;
        xcb_test_fake_input(connection, kind, left, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        xcb_flush(connection);
    }

    /// The screen once it has been still for a while.
    [[nodiscard]] std::vector<std::uint32_t> pixelsWhenStill() const
    {
        while (screen.nextEvent(stillDuration)) {
        }
        return screen.pixels();
    }

    [[nodiscard]] std::vector<Frame> framesUntilStill() const
    {
        constexpr std::chrono::seconds limit{10};
        std::vector<Frame> frames;
        auto event = screen.nextEvent(limit);
        while (event) {
            if (eventType(*event) == damageEvent) {
                // Everything that has come with it was drawn before the look.
                const Timestamp timestamp = now();
                frames.push_back({timestamp, screen.pixels()});
                do {
                    event.reset(xcb_poll_for_queued_event(connection));
                } while (event);
            }
            event = screen.nextEvent(stillDuration);
        }
        return frames;
    }

    static std::string describe(
        const std::vector<std::uint32_t>& before,
        Timestamp clicked,
        const std::vector<Frame>& frames)
    {
        const auto& last = frames.back().pixels;
        std::size_t changed = 0;
        for (std::size_t index = 0; index < last.size(); ++index) {
            changed += last[index] != before[index] ? 1U : 0U;
        }
        constexpr std::size_t twentieth = 20;
        for (const Frame& frame : frames) {
            std::size_t missing = 0;
            for (std::size_t index = 0; index < last.size(); ++index) {
                missing += frame.pixels[index] != last[index] ? 1U : 0U;
            }
            if (missing <= changed / twentieth) {
                return std::to_string(frame.timestamp - clicked) + ' ' + std::to_string(changed);
            }
        }
        return "nothing changed";
    }

    static constexpr std::chrono::milliseconds stillDuration{150};

    const Screen& screen;
    xcb_connection_t* connection;
    std::uint8_t damageEvent = 0;
};

/// Clicks into each window that standard input names, one a line, and prints the result of each in
/// a line.
void followClicks(const Screen& screen)
{
    Clicker clicker(screen);
    std::cout << "ready" << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream input(line);
        xcb_window_t window = XCB_NONE;
        input >> window;
        std::cout << clicker.click(window) << std::endl;
    }
}

} // namespace
} // namespace orlimo

/// Tells when something can be seen on the display, on CLOCK_MONOTONIC in nanoseconds.
int main(int argc, char* argv[])
{
    const std::string_view what = argc == 2 ? argv[1] : "";
    try {
        const orlimo::Screen screen;
        if (what == "clipboard") {
            orlimo::followClipboard(screen);
        } else if (what == "docking") {
            orlimo::followDocking(screen);
        } else if (what == "clicks") {
            orlimo::followClicks(screen);
        } else {
            std::cerr << "Usage: orlimo-screen-clock clipboard|docking|clicks\n";
            return 2;
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "orlimo-screen-clock: " << error.what() << '\n';
        return 1;
    }
}
