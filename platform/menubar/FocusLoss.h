#pragma once

namespace orlimo {

/// What the system reveals about why a window lost the keyboard focus.
enum class FocusLoss {
    /// The user chose another window, or another program opened one.
    deliberate,
    /// The focus followed the pointer; nobody clicked. A click elsewhere is reported when it comes.
    followedPointer,
    /// One of the two.
    unknown,
};

} // namespace orlimo
