#include "tests/desktop/WaylandClipboardTest.h"
#include "tests/desktop/sessions/wayland/SwaySession.h"

namespace orlimo {
namespace {

INSTANTIATE_TYPED_TEST_SUITE_P(Sway, PasteboardOnWayland, SwaySession);
INSTANTIATE_TYPED_TEST_SUITE_P(Sway, ClipboardOnWayland, SwaySession);
INSTANTIATE_TYPED_TEST_SUITE_P(Sway, ClipboardOfSlowCompositor, SwaySession);
INSTANTIATE_TYPED_TEST_SUITE_P(Sway, PrimarySelectionOnWayland, SwaySession);

} // namespace
} // namespace orlimo
