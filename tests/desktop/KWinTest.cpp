#include "tests/desktop/WaylandClipboardTest.h"
#include "tests/desktop/sessions/wayland/KWinSession.h"

namespace orlimo {
namespace {

// The compositor shows the primary selection to no program without a window.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PrimarySelectionOnWayland);

INSTANTIATE_TYPED_TEST_SUITE_P(KWin, PasteboardOnWayland, KWinSession);
INSTANTIATE_TYPED_TEST_SUITE_P(KWin, ClipboardOnWayland, KWinSession);
INSTANTIATE_TYPED_TEST_SUITE_P(KWin, ClipboardOfSlowCompositor, KWinSession);

} // namespace
} // namespace orlimo
