#pragma once

#include "platform/desktop/SystemSymbol.h"

#include <QUrl>
#include <QWidget>

#include <functional>

namespace orlimo {

/// How the user grants access to the whole disk, with a button that leads to the right page of the
/// system's settings. Its texts are white: it wants a dark ground. Main thread.
class HelperView : public QWidget
{
    Q_OBJECT

public:
    /// `open` has the system open an address.
    HelperView(std::function<bool(const QUrl&)> open, const SystemSymbols& symbols);

    static constexpr int stackSpacing = 5;

private:
    void openSystemSettings();

    std::function<bool(const QUrl&)> urlOpener;
};

} // namespace orlimo
