#pragma once

#include <QDialog>

namespace orlimo {

/// The About panel: the program's image, name, version and copyright. Closing it, also with Escape,
/// only hides it. Main thread.
class AboutPanel final : public QDialog
{
public:
    AboutPanel();

    /// Shows the panel, restored if it was minimized, in front of everything and with the focus.
    void showInFront();
};

} // namespace orlimo
