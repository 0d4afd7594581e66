#pragma once

#include "app/AppDelegate.h"
#include "app/ApplicationDelegateAdaptor.h"
#include "app/ImageRenderer.h"
#include "app/MenuBarIcon.h"
#include "app/StateObject.h"
#include "capture/Message.h"
#include "platform/services/Services.h"

#include <memory>

namespace orlimo {

class MenuBarScene;

/// The application: its delegate and its one capture controller, which watches the store from the
/// moment the application is built. Main thread; needs Qt's application object.
class OrlimoApp
{
public:
    explicit OrlimoApp(const Services& systemServices);

    [[nodiscard]] AppDelegate& appDelegate() { return delegateAdaptor.wrappedValue(); }
    [[nodiscard]] StateObject<ImageRenderer<MenuBarIcon>>& appIconRenderer()
    {
        return iconRenderer;
    }
    [[nodiscard]] const std::shared_ptr<Message>& message() const { return controller; }

    /// The application's one scene, shown: the icon in the menu bar and its window.
    [[nodiscard]] std::unique_ptr<MenuBarScene> body() const;

private:
    Services services;
    ApplicationDelegateAdaptor<AppDelegate> delegateAdaptor;
    StateObject<ImageRenderer<MenuBarIcon>> iconRenderer;
    std::shared_ptr<Message> controller;
};

} // namespace orlimo
