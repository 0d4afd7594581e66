#include "app/guidance/HelperView.h"

#include "controls/ImageView.h"
#include "controls/Spacer.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "controls/painting/LayoutMetrics.h"
#include "platform/threads/MainThread.h"

#include <QVBoxLayout>

#include <utility>

namespace orlimo {

namespace {

constexpr QSize logoSize(100, 100);
constexpr QSize illustrationSize(200, 131);
constexpr int titleWidth = 320;
constexpr int titleFontSize = 28;
constexpr int textWidth = 420;
constexpr int textFontSize = 14;
constexpr int buttonFontSize = 15;
constexpr int buttonLabelPadding = 5;

constexpr const char16_t* settingsPage =
    u"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";

TextLabel* makeTitle(const QString& text)
{
    auto* title = new TextLabel(text, titleFontSize, whiteColor, QFont::Bold);
    title->setFixedWidth(titleWidth);
    title->setAlignment(Qt::AlignCenter);
    return title;
}

TextLabel* makeParagraph(const QString& text, PaletteColor color)
{
    auto* paragraph =
        new TextLabel(text, textFontSize, color, QFont::Normal, TextLabel::Lines::asNeeded);
    paragraph->setFixedWidth(textWidth);
    paragraph->setAlignment(Qt::AlignCenter);
    return paragraph;
}

QWidget* makeButton(TextButton* button)
{
    auto* padded = new QWidget;
    auto* layout = new QVBoxLayout(padded);
    constexpr int padding = metrics::defaultPadding;
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->addWidget(button);
    padded->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return padded;
}

} // namespace

HelperView::HelperView(std::function<bool(const QUrl&)> open, const SystemSymbols& symbols)
    : urlOpener(std::move(open))
{
    requireMainThread();
    auto* stack = new QVBoxLayout(this);
    constexpr int padding = metrics::defaultPadding;
    stack->setContentsMargins(padding, padding, padding, padding);
    stack->setSpacing(stackSpacing);

    const auto add = [stack](QWidget* view, const char* name) {
        view->setObjectName(QLatin1String(name));
        stack->addWidget(view, 0, Qt::AlignHCenter);
    };
    add(new ImageView(QStringLiteral("logo"), logoSize), "logo");
    add(makeTitle(tr("Allow acess")), "title");
    add(makeParagraph(
            tr("Full Disk Access is required to read the verification code from Messages."),
            whiteColor),
        "explanation");
    add(makeParagraph(
            tr("open System Preferences > Security & Privacy > Full Disk Access and allow Orlimo "
               "in the list."),
            grayColor),
        "instruction");
    stack->addWidget(new Spacer(Qt::Vertical), 1);
    add(new ImageView(QStringLiteral("helper"), illustrationSize), "helper");
    stack->addWidget(new Spacer(Qt::Vertical), 1);

    constexpr int label = buttonLabelPadding;
    auto* button = new TextButton(
        tr("Open System Setting"),
        {.style = TextButton::Style::bordered,
         .fontPixelSize = buttonFontSize,
         .padding = QMargins(label, label, label, label),
         .systemSymbolName = QStringLiteral("hand.raised.fill"),
         .symbols = symbols});
    button->setObjectName(QStringLiteral("openSystemSetting"));
    connect(button, &TextButton::clicked, this, &HelperView::openSystemSettings);
    add(makeButton(button), "buttonFrame");
}

void HelperView::openSystemSettings()
{
    requireMainThread();
    const QUrl url(QString::fromUtf16(settingsPage), QUrl::StrictMode);
    if (url.isValid()) {
        urlOpener(url);
    }
}

} // namespace orlimo
