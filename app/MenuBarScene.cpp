#include "app/MenuBarScene.h"

#include "app/MenuBarIcon.h"
#include "app/panel/StatusMenuView.h"
#include "controls/ScrollingView.h"

#include <utility>

namespace orlimo {

MenuBarScene::MenuBarScene(std::shared_ptr<Message> controller)
    : extra(MenuBarExtra::create(
          [message = std::move(controller)] {
              return std::make_unique<ScrollingView>(std::make_unique<StatusMenuView>(message));
          },
          MenuBarIcon::icon()))
{}

} // namespace orlimo
