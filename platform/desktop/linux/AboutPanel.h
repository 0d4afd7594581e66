#pragma once

#include "platform/desktop/SharedApplication.h"

#include <QDialog>
#include <QLabel>

namespace orlimo {

/// The About panel: the program's image, name, version and copyright. Closed, by
/// Escape too, it is only hidden. Main thread.
class AboutPanel final : public QDialog
{
public:
    AboutPanel();

    /// Says what the program says of itself, but for the `options` "ApplicationName",
    /// "ApplicationVersion" and "Copyright" that are given. An empty text leaves its line out.
    void show(const AboutPanelOptions& options);

private:
    QLabel* name;
    QLabel* version;
    QLabel* copyright;
};

} // namespace orlimo
