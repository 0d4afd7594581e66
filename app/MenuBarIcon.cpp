#include "app/MenuBarIcon.h"

#include "controls/ImageView.h"
#include "controls/painting/Colors.h"
#include "platform/threads/MainThread.h"
#include "resources/ImageIcon.h"

#include <QHBoxLayout>

namespace orlimo {

namespace {

constexpr const char16_t* imageName = u"StatusBarIcon";

} // namespace

MenuBarIcon::MenuBarIcon()
{
    requireMainThread();
    auto* stack = new QHBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addWidget(
        new ImageView(QString::fromUtf16(imageName), frameSize, textColor), 0, Qt::AlignCenter);
    setFixedSize(frameSize);
}

QIcon MenuBarIcon::icon()
{
    requireMainThread();
    return templateIcon(QString::fromUtf16(imageName));
}

} // namespace orlimo
