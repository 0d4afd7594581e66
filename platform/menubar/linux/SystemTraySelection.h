#pragma once

#include <QAbstractNativeEventFilter>
#include <QColor>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

#include <xcb/xcb.h>

namespace orlimo {

/// Whether a tray on the X server takes windows as icons, which is whether the selection that
/// stands for trays has an owner. On other platforms there is none, ever. Needs the toolkit's
/// application object, whose connection it uses. Main thread.
class SystemTraySelection final : public QObject, private QAbstractNativeEventFilter
{
public:
    /// `changed` is called in the event loop, each time that a tray has come or gone or paints
    /// its text in another color.
    explicit SystemTraySelection(std::function<void()> changed);

    /// Whether there is a tray.
    [[nodiscard]] bool hasOwner() const { return owner != XCB_NONE; }

    /// The color of text and symbols in the tray, as the tray publishes it
    /// (`_NET_SYSTEM_TRAY_COLORS`); none where it does not.
    [[nodiscard]] std::optional<QColor> textColor() const { return color; }

    /// To be called when Qt has made an icon: for that Qt chooses anew which changes of the tray
    /// this connection is notified of, and those of the color are not among them.
    void iconWasCreated();

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    [[nodiscard]] bool isTrayEvent(const xcb_generic_event_t& event) const;
    void refresh();
    [[nodiscard]] xcb_window_t subscribeToOwner() const;
    [[nodiscard]] xcb_window_t currentOwner() const;
    [[nodiscard]] std::optional<QColor> publishedColor() const;

    std::function<void()> didChange;
    QTimer refreshTimer;
    xcb_connection_t* connection = nullptr;
    xcb_atom_t selection = XCB_NONE;
    xcb_atom_t manager = XCB_NONE;
    xcb_atom_t colors = XCB_NONE;
    xcb_window_t owner = XCB_NONE;
    std::optional<QColor> color;
};

} // namespace orlimo
