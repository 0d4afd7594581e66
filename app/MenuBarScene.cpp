#include "app/MenuBarScene.h"

#include "app/MenuBarIcon.h"
#include "app/ModuleServices.h"
#include "app/panel/StatusMenuView.h"
#include "controls/ScrollingView.h"

#include <utility>

namespace orlimo {

MenuBarScene::MenuBarScene(std::shared_ptr<Message> controller, const Services& services)
    : extra(services.makeMenuBarExtra(
          [message = std::move(controller), menu = menuServices(services)] {
              return std::make_unique<ScrollingView>(
                  std::make_unique<StatusMenuView>(message, menu));
          },
          MenuBarIcon::icon(),
          services.clock))
{}

} // namespace orlimo
