#include "platform/clipboard/linux/DescriptorNotifier.h"

#include <QCoreApplication>

#include <utility>

namespace orlimo {

void NotifierDeleter::operator()(QSocketNotifier* notifier) const
{
    notifier->setEnabled(false);
    if (QCoreApplication::instance() != nullptr) {
        notifier->deleteLater();
    } else {
        delete notifier; // there is no event loop left that could be inside its call
    }
}

DescriptorNotifier
makeDescriptorNotifier(int descriptor, QSocketNotifier::Type type, std::function<void()> ready)
{
    DescriptorNotifier notifier(new QSocketNotifier(descriptor, type));
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), std::move(ready));
    return notifier;
}

} // namespace orlimo
