#include "app/panel/StatusMenuView.h"

#include "app/panel/PopupView.h"
#include "controls/Divider.h"
#include "controls/Spacer.h"
#include "controls/TextButton.h"
#include "controls/accessibility/AccessibleWindow.h"
#include "controls/accessibility/InitialFocus.h"
#include "controls/painting/Colors.h"
#include "controls/painting/LayoutMetrics.h"
#include "controls/painting/PixelGrid.h"
#include "platform/threads/MainThread.h"

#include <QPainter>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace orlimo {

namespace {

constexpr int stackSpacing = 1;
constexpr int commandsPadding = 20;
/// Around a command's title.
constexpr QMargins titlePadding{20, 10, 20, 10};

TextButton* makeCommand(const QString& title, const QString& name, TextButton::Style style)
{
    auto* button = new TextButton(
        title, {.style = style, .fontPixelSize = metrics::smallFontSize, .padding = titlePadding});
    button->setObjectName(name);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return button;
}

} // namespace

StatusMenuView::StatusMenuView(std::shared_ptr<Message> controller, MenuServices menuServices)
    : services(std::move(menuServices))
    , message(std::move(controller))
{
    requireMainThread();
    setFixedSize(size);
    installAccessibleWindowFactory();
    InitialFocus::attach(*this);
    // It fills itself, so that Qt need not do so before.
    setAttribute(Qt::WA_OpaquePaintEvent);
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(stackSpacing);
    auto* panel = new PopupView(message, services.panel);
    panel->setObjectName(QStringLiteral("panel"));
    stack->addWidget(panel);
    stack->addWidget(new Spacer(Qt::Vertical), 1);
    stack->addWidget(new Divider);
    stack->addWidget(makeCommands());
    stack->addWidget(new Spacer(Qt::Vertical), 1);
}

QWidget* StatusMenuView::makeCommands() const
{
    auto* commands = new QWidget;
    commands->setObjectName(QStringLiteral("commands"));
    commands->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* stack = new QVBoxLayout(commands);
    stack->setContentsMargins(commandsPadding, commandsPadding, commandsPadding, commandsPadding);
    stack->setSpacing(metrics::defaultSpacing);

    auto* about = makeCommand(tr("About"), QStringLiteral("about"), TextButton::Style::plain);
    connect(about, &TextButton::clicked, this, &StatusMenuView::showAbout);
    stack->addWidget(about);

    auto* website =
        makeCommand(tr("Open website"), QStringLiteral("openWebsite"), TextButton::Style::plain);
    connect(website, &TextButton::clicked, this, &StatusMenuView::openWebsite);
    stack->addWidget(website);

    stack->addWidget(new Divider);

    auto* quitCommand =
        makeCommand(tr("Quit"), QStringLiteral("quit"), TextButton::Style::bordered);
    connect(quitCommand, &TextButton::clicked, this, &StatusMenuView::quit);
    stack->addWidget(quitCommand);
    return commands;
}

void StatusMenuView::showAbout() const
{
    requireMainThread();
    services.application().orderFrontStandardAboutPanel();
}

void StatusMenuView::openWebsite() const
{
    requireMainThread();
    const QUrl url(QString::fromStdString(services.website), QUrl::StrictMode);
    if (url.isValid()) {
        services.openUrl(url);
    }
}

void StatusMenuView::quit() const
{
    requireMainThread();
    services.application().terminate();
}

void StatusMenuView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), windowColor(palette()));
    // The window has no frame of its own.
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelGrid grid(painter);
    const double half = grid.lineWidth() / 2;
    painter.setPen(QPen(
        separatorColor(palette()), grid.lineWidth(), Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.drawRect(grid.snapped(rect()).adjusted(half, half, -half, -half));
}

} // namespace orlimo
