#pragma once

#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/faults/FaultTable.h"
#include "tests/platform/clipboard/linux/ScriptedCompositor.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/MessageBus.h"

#include <filesystem>
#include <memory>
#include <string>

namespace orlimo {

/// The built program with a fault beneath it, in a session of its own.
class FaultyProgram
{
public:
    /// Makes the session and starts the writer; the program waits for `start`.
    FaultyProgram(const FaultRow& faultRow, const XServer& xServer);

    void start();

    /// Waits for what the program prints while it starts and checks it.
    void checkStart();

    /// Begins the fault where it has not begun with the start. It lasts until `removeFault`.
    void injectFault();

    /// Has a message come with `code` and checks what the program does about it.
    void checkReaction(const Reaction& reaction, const std::string& code);

    /// Ends the fault.
    void removeFault() const;

    /// Checks that the fault did happen, what the program said of it, and that nothing is lost or
    /// half written. Ends the program.
    void checkOutcome();

private:
    [[nodiscard]] ProgramSession::Settings sessionSettings() const;
    [[nodiscard]] bool ends() const { return row.status || row.signal; }
    void writeFiles() const;
    [[nodiscard]] bool isRegistered() const;
    /// Whether a program that pastes gets `code`, from the compositor or from the X server.
    [[nodiscard]] bool isOnClipboard(const std::string& code) const;
    void expectLines(const std::vector<std::string>& lines);
    void checkEnd();
    void checkSettings() const;
    void checkLoginItem() const;
    void checkStore();

    const FaultRow& row;
    const XServer& server;
    TemporaryFolder folder;
    std::filesystem::path switchFile;
    std::filesystem::path recordFile;
    std::unique_ptr<MessageBus> bus;
    std::unique_ptr<ScriptedCompositor> compositor;
    ProgramSession session;
    int delivered = 0;
};

} // namespace orlimo
