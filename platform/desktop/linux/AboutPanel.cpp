#include "platform/desktop/linux/AboutPanel.h"

#include "platform/ApplicationIdentity.h"
#include "platform/process/ToQString.h"
#include "resources/Artwork.h"
#include "resources/ImageIcon.h"

#include <QCoreApplication>
#include <QFont>
#include <QPainter>
#include <QString>
#include <QVBoxLayout>

#include <string>
#include <string_view>

namespace orlimo {

namespace {

constexpr QSize logoSize(64, 64);

/// The program's image, drawn for whichever screen it is on.
class Logo final : public QWidget
{
public:
    Logo() { setFixedSize(logoSize); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter(this).drawPixmap(
            rect(), Artwork(u"images", u"logo").drawn(logoSize, devicePixelRatioF()));
    }
};

QLabel* makeLine(int pixelSize, QFont::Weight weight)
{
    auto* const label = new QLabel; // the layout's widget takes it
    QFont font = label->font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    label->setFont(font);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

void setLine(QLabel& label, const QString& text)
{
    label.setText(text);
    label.setVisible(!text.isEmpty());
}

QString option(const AboutPanelOptions& options, const std::string& key, std::string_view fallback)
{
    const auto found = options.find(key);
    return toQString(found == options.end() ? fallback : found->second);
}

} // namespace

AboutPanel::AboutPanel()
    : name(makeLine(17, QFont::Bold))
    , version(makeLine(13, QFont::Normal))
    , copyright(makeLine(11, QFont::Normal))
{
    setWindowIcon(imageIcon(QStringLiteral("logo")));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(40, 28, 40, 24);
    column->setSpacing(0);
    column->addWidget(new Logo, 0, Qt::AlignHCenter);
    column->addSpacing(12);
    column->addWidget(name);
    column->addSpacing(4);
    column->addWidget(version);
    column->addSpacing(16);
    column->addWidget(copyright);
    column->setSizeConstraint(QLayout::SetFixedSize);
}

void AboutPanel::show(const AboutPanelOptions& options)
{
    const QString nameText = option(options, "ApplicationName", identity::applicationName);
    const QString versionText = option(options, "ApplicationVersion", identity::version);
    setWindowTitle(QCoreApplication::translate("AboutPanel", "About %1").arg(nameText));
    setLine(*name, nameText);
    setLine(
        *version,
        versionText.isEmpty()
            ? QString()
            : QCoreApplication::translate("AboutPanel", "Version %1").arg(versionText));
    setLine(*copyright, option(options, "Copyright", identity::copyright));
    showNormal();
    raise();
    activateWindow();
}

} // namespace orlimo
