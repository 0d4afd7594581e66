#include "app/AppDelegate.h"

#include "capture/PreferenceDefaults.h"
#include "platform/UserDefaults.h"

namespace orlimo {

void AppDelegate::applicationWillFinishLaunching()
{
    writePreferenceDefaults(standardUserDefaults());
}

} // namespace orlimo
