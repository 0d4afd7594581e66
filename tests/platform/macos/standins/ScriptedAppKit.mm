#include "tests/platform/macos/standins/ScriptedAppKit.h"

namespace orlimo {

ScriptedAppKit& scriptedAppKit()
{
    static ScriptedAppKit script;
    return script;
}

} // namespace orlimo
