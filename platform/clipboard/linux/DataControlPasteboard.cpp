#include "platform/clipboard/linux/DataControlPasteboard.h"

#include "platform/clipboard/linux/ClipboardRoute.h"

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
            useFallback();
        }
    });
}

void DataControlPasteboard::declareTypes(std::initializer_list<PasteboardType> /*types*/) {}

void DataControlPasteboard::setString(std::string_view text, PasteboardType type)
{
    if (isUnsupported) {
        fallback.setString(text, type);
        return;
    }
    newest = text;
    hasFallbackNewest = false;
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
        useFallback();
        break;
    case DataControlClipboard::Outcome::unsupported:
        isUnsupported = true;
        if (isQtOnWayland()) {
            reportThatClipboardNeedsFocus();
        }
        useFallback();
        break;
    }
    newest.clear();
}

void DataControlPasteboard::useFallback()
{
    if (!std::exchange(hasFallbackNewest, true)) {
        fallback.setString(newest, PasteboardType::string);
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
