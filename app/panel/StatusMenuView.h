#pragma once

#include "app/panel/MenuServices.h"
#include "capture/Message.h"

#include <QWidget>

#include <memory>

namespace orlimo {

class PopupView;
class TextButton;

/// The menu-bar window's content: the code panel above the commands "About", "Open website" and
/// "Quit". No control has the keyboard focus when it is shown: Tab gives it to the first. Main
/// thread.
class StatusMenuView : public QWidget
{
    Q_OBJECT

public:
    StatusMenuView(std::shared_ptr<Message> controller, MenuServices menuServices);

    static constexpr QSize size{300, 540};

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makeCommands() const;
    void showAbout() const;
    void openWebsite() const;
    void quit() const;

    MenuServices services;
    std::shared_ptr<Message> message;
};

} // namespace orlimo
