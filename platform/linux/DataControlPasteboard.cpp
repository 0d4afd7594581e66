#include "platform/linux/DataControlPasteboard.h"

#include "platform/linux/ClipboardRoute.h"

#include <QGuiApplication>

#include <chrono>
#include <iostream>
#include <utility>

namespace orlimo {

namespace {

bool isQtOnWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

} // namespace

DataControlPasteboard::DataControlPasteboard()
{
    using namespace std::chrono_literals;
    responseLimit.setSingleShot(true);
    responseLimit.setInterval(2s);
    responseLimit.callOnTimeout([this] {
        reportOutOfReach();
        // On Wayland Qt would ask the same compositor, and its request, which is in vain without
        // the focus, could come after ours and take the clipboard away again.
        if (!isQtOnWayland()) {
            useStandIn();
        }
    });
}

void DataControlPasteboard::declareTypes(std::initializer_list<PasteboardType> /*types*/) {}

void DataControlPasteboard::setString(std::string_view text, PasteboardType type)
{
    if (isUnsupported) {
        standIn.setString(text, type);
        return;
    }
    newest = text;
    hasStandInNewest = false;
    responseLimit.start();
    clipboard.setText(newest, [this](DataControlClipboard::Outcome outcome) {
        responseLimit.stop();
        didComplete(outcome);
    });
}

void DataControlPasteboard::didComplete(DataControlClipboard::Outcome outcome)
{
    switch (outcome) {
    case DataControlClipboard::Outcome::sent:
        isOutOfReach = false;
        break;
    case DataControlClipboard::Outcome::unreachable:
        reportOutOfReach();
        useStandIn();
        break;
    case DataControlClipboard::Outcome::unsupported:
        isUnsupported = true;
        if (isQtOnWayland()) {
            reportThatClipboardNeedsFocus();
        }
        useStandIn();
        break;
    }
    newest.clear();
}

void DataControlPasteboard::useStandIn()
{
    if (!std::exchange(hasStandInNewest, true)) {
        standIn.setString(newest, PasteboardType::string);
    }
}

/// Says so once for each time that the compositor goes out of reach.
void DataControlPasteboard::reportOutOfReach()
{
    if (!std::exchange(isOutOfReach, true)) {
        std::cerr << "orlimo: the compositor's clipboard cannot be reached\n" << std::flush;
    }
}

} // namespace orlimo
