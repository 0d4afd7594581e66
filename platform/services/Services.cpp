#include "platform/services/Services.h"

#include "platform/desktop/Workspace.h"
#include "platform/files/DirectoryListing.h"
#include "platform/files/LibraryFolder.h"
#include "platform/process/LoginItemLog.h"
#include "platform/services/Session.h"

namespace orlimo {

Services makeServices(const Session& session)
{
    // Never destroyed: it serves to the end, beyond that of Qt's objects.
    static Pasteboard& pasteboard = *session.makePasteboard().release();
    return {
        .userDefaults = standardUserDefaults(),
        .pasteboard = pasteboard,
        .loginItem = mainAppService(),
        .mainQueue = mainQueue(),
        .backgroundQueue = backgroundQueue(),
        .clock = currentUptime,
        .libraryFolder = libraryFolder,
        .openFile = FileHandle::openForReading,
        .makeVnodeSource = makeFileSystemObjectSource,
        .userEntry = currentUserEntry,
        .canListDirectory = canListDirectory,
        .currentLaunchEvent = currentLaunchEvent,
        .logLoginItemError = logLoginItemError,
        .application = sharedApplication,
        .makeMenuBarExtra = MenuBarExtra::create,
        .openUrl = openUrl,
        .mainScreenFrame = mainScreenFrame,
        .fromSystemCoordinates = fromSystemCoordinates,
        .orderFrontRegardless = [](QWidget& window) { orderFrontRegardless(window); },
        .symbols = {.draw = systemSymbol, .size = systemSymbolSize},
    };
}

} // namespace orlimo
