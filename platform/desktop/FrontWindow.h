#pragma once

class QWidget;

namespace orlimo {

/// Brings a window that is shown to the front of all windows, whether or not the program is the
/// active one, as far as the host lets a program do that. Main thread.
void orderFrontRegardless(QWidget& window);

} // namespace orlimo
