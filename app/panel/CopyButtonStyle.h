#pragma once

#include "app/guidance/DrawnView.h"

namespace orlimo {

/// The style of the copy button: its label in white, on rounded corners, padded. Looks the same
/// while it is pressed.
struct CopyButtonStyle
{
    struct Configuration
    {
        DrawnView label;
        bool isPressed = false;
    };

    /// The styled label. Main thread.
    [[nodiscard]] static DrawnView makeBody(Configuration configuration);

    static constexpr double cornerRadius = 10;
};

} // namespace orlimo
