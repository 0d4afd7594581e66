#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

#include <functional>

#include <xcb/xcb.h>

namespace orlimo {

/// Whether a tray on the X server takes windows as icons, which is whether the selection that
/// stands for trays has an owner. On other platforms there is none, ever. Needs the toolkit's
/// application object, whose connection it uses. Main thread.
class SystemTraySelection final : public QObject, private QAbstractNativeEventFilter
{
public:
    /// `whoIsTold` is called in the event loop, each time that a tray has come or gone.
    explicit SystemTraySelection(std::function<void()> whoIsTold);

    /// Whether there is a tray.
    [[nodiscard]] bool hasOwner() const { return owner != XCB_NONE; }

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    [[nodiscard]] bool tellsOfTrays(const xcb_generic_event_t& event) const;
    void look();
    [[nodiscard]] xcb_window_t listenToOwner() const;
    [[nodiscard]] xcb_window_t currentOwner() const;

    std::function<void()> didChange;
    QTimer lookSoon;
    xcb_connection_t* connection = nullptr;
    xcb_atom_t selection = XCB_NONE;
    xcb_atom_t manager = XCB_NONE;
    xcb_window_t owner = XCB_NONE;
};

} // namespace orlimo
