#include "platform/clipboard/linux/DataControlPasteboard.h"

#include "platform/clipboard/linux/ClipboardBackend.h"

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
    responseTimer.setSingleShot(true);
    responseTimer.setInterval(2s);
    responseTimer.callOnTimeout([this] {
        reportUnreachable();
        // On Wayland Qt would send its request to the same compositor. Without the focus it has no
        // effect, but arriving after ours it could take the clipboard away again.
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
    latestText = text;
    isFallbackUpToDate = false;
    responseTimer.start();
    clipboard.setText(latestText, [this](DataControlClipboard::Outcome outcome) {
        responseTimer.stop();
        didComplete(outcome);
    });
}

void DataControlPasteboard::didComplete(DataControlClipboard::Outcome outcome)
{
    switch (outcome) {
    case DataControlClipboard::Outcome::sent:
        isUnreachable = false;
        break;
    case DataControlClipboard::Outcome::unreachable:
        reportUnreachable();
        useFallback();
        break;
    case DataControlClipboard::Outcome::unsupported:
        isUnsupported = true;
        if (isQtOnWayland()) {
            warnThatClipboardNeedsFocus();
        }
        useFallback();
        break;
    }
    latestText.clear();
}

void DataControlPasteboard::useFallback()
{
    if (!std::exchange(isFallbackUpToDate, true)) {
        fallback.setString(latestText, PasteboardType::string);
    }
}

/// Logs once each time the compositor becomes unreachable.
void DataControlPasteboard::reportUnreachable()
{
    if (!std::exchange(isUnreachable, true)) {
        std::cerr << "orlimo: the compositor's clipboard cannot be reached\n" << std::flush;
    }
}

} // namespace orlimo
