#include "platform/desktop/linux/AboutPanel.h"

#include "platform/ApplicationIdentity.h"
#include "platform/process/ToQString.h"
#include "resources/Artwork.h"
#include "resources/ImageIcon.h"

#include <QCoreApplication>
#include <QFont>
#include <QLabel>
#include <QPainter>
#include <QString>
#include <QVBoxLayout>

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

QLabel* makeLine(const QString& text, int pixelSize, QFont::Weight weight)
{
    auto* const label = new QLabel(text); // the layout's widget takes it
    QFont font = label->font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    label->setFont(font);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

} // namespace

AboutPanel::AboutPanel()
{
    const QString name = toQString(identity::applicationName);
    const QString version =
        QCoreApplication::translate("AboutPanel", "Version %1").arg(toQString(identity::version));
    setWindowTitle(QCoreApplication::translate("AboutPanel", "About %1").arg(name));
    setWindowIcon(imageIcon(QStringLiteral("logo")));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(40, 28, 40, 24);
    column->setSpacing(0);
    column->addWidget(new Logo, 0, Qt::AlignHCenter);
    column->addSpacing(12);
    column->addWidget(makeLine(name, 17, QFont::Bold));
    column->addSpacing(4);
    column->addWidget(makeLine(version, 13, QFont::Normal));
    column->addSpacing(16);
    column->addWidget(makeLine(toQString(identity::copyright), 11, QFont::Normal));
    column->setSizeConstraint(QLayout::SetFixedSize);
}

void AboutPanel::showInFront()
{
    showNormal();
    raise();
    activateWindow();
}

} // namespace orlimo
