#pragma once

#include <QAbstractNativeEventFilter>
#include <QColor>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

#include <xcb/xcb.h>

namespace orlimo {

/// Whether a tray on the X server embeds windows as icons, that is, whether the system tray
/// selection has an owner. Never true on other platforms. Requires Qt's application object, whose
/// connection it uses. Main thread.
class SystemTraySelection final : public QObject, private QAbstractNativeEventFilter
{
public:
    /// `changed` is called in the event loop each time a tray has appeared, disappeared or changed
    /// the color of its text.
    explicit SystemTraySelection(std::function<void()> changed);

    /// Whether there is a tray.
    [[nodiscard]] bool hasOwner() const { return owner != XCB_NONE; }

    /// The color of text and symbols in the tray, as published by the tray
    /// (`_NET_SYSTEM_TRAY_COLORS`); none if it publishes none.
    [[nodiscard]] std::optional<QColor> textColor() const { return color; }

    /// To be called when Qt has created an icon: Qt then replaces this connection's event mask on
    /// the tray's window with one that does not include changes of the color.
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
