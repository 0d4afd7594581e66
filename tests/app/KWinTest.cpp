#include "tests/app/KWinSession.h"
#include "tests/app/WaylandClipboardTest.h"

namespace orlimo {
namespace {

INSTANTIATE_TYPED_TEST_SUITE_P(KWin, PasteboardOnWayland, KWinSession);
INSTANTIATE_TYPED_TEST_SUITE_P(KWin, ClipboardOnWayland, KWinSession);

} // namespace
} // namespace orlimo
