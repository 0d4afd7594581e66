#include "tests/login/ServiceUnderTest.h"

namespace orlimo {

LoginItemService& serviceUnderTest(ScriptedLoginItemService& script)
{
    return script;
}

} // namespace orlimo
