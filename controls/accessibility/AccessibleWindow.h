#pragma once

namespace orlimo {

/// Has plain widgets that are windows announced to assistive technology as windows, not as fillers,
/// which it passes over: under their title, or without one under the program's name, as in their
/// title bar. May be called again. Needs the application object. Main thread.
void installAccessibleWindowFactory();

} // namespace orlimo
