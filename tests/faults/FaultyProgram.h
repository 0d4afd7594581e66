#pragma once

#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/faults/FaultTable.h"
#include "tests/platform/clipboard/linux/ScriptedCompositor.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltRecorder.h"
#include "tests/support/StoreIntegrity.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/MessageBus.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The built program with a fault beneath it, in a session of its own.
class FaultyProgram
{
public:
    /// Makes the session and starts the writer; the program waits for `start`.
    FaultyProgram(const FaultRow& faultRow, const XServer& xServer)
        : row(faultRow)
        , server(xServer)
        , session(sessionSettings())
    {
        if (row.hasFiles) {
            writeFile(session.preferences(), usersSettings);
            writeFile(session.autostartEntry(), usersEntry);
        }
        session.startWriter();
        if (row.hasEmptyLog) {
            EXPECT_EQ(session.writer().ask("truncate"), "ok");
        }
    }

    /// Starts the program and checks what it prints.
    void start()
    {
        if (row.phase == FaultRow::Phase::fromStart) {
            writeFile(switchFile, "");
        }
        session.startProgram();
        expectLines(row.start.value_or(ProgramSession::startUpLines()));
        if (row.losesOutput) {
            // It watches the store by then.
            EXPECT_TRUE(await([this] { return isRegistered(); }));
        }
    }

    /// Begins the fault where it has not begun with the start. It lasts until `removeFault`.
    void injectFault()
    {
        // The last that the start leaves behind.
        EXPECT_TRUE(
            await([&] { return isRegistered() || row.phase == FaultRow::Phase::fromStart; }));
        writeFile(switchFile, "");
        if (row.endsBus) {
            bus->end();
        }
    }

    /// Has a message come with `code` and checks what the program does about it.
    void checkReaction(const Reaction& reaction, const std::string& code)
    {
        const std::string text = "Code " + code;
        session.deliver("text " + text);
        ++delivered;
        if (ends()) {
            (void)session.program().awaitEnd();
            return;
        }
        const auto usual =
            reaction.copies ? ProgramSession::reactionTo(text, code) : std::vector<std::string>{};
        expectLines(reaction.lines.value_or(usual));
        if (reaction.copies) {
            EXPECT_TRUE(await([&] { return isOnClipboard(code); }))
                << "the X clipboard holds " << server.paste("clipboard") << ", expected " << code
                << '\n'
                << session.program().output() << session.program().errors();
        } else {
            EXPECT_FALSE(isOnClipboard(code));
        }
    }

    void removeFault() const { std::filesystem::remove(switchFile); }

    /// Checks that the fault did happen, what the program said of it, and that nothing is lost or
    /// half written. Ends the program.
    void checkOutcome()
    {
        EXPECT_TRUE(row.endsBus || std::filesystem::exists(recordFile))
            << "the fault did not happen";
        checkEnd();
        // Nothing is printed beside what was expected.
        if (!row.losesOutput && !ends()) {
            EXPECT_EQ(session.program().readLine(std::chrono::milliseconds(0)), std::nullopt);
        }
        if (row.errors.empty()) {
            EXPECT_EQ(session.program().errors(), "");
        } else {
            EXPECT_THAT(session.program().errors(), testing::HasSubstr(row.errors));
        }
        if (row.systemLog.empty()) {
            EXPECT_THAT(session.systemLog(), testing::IsEmpty());
        } else {
            EXPECT_THAT(session.systemLog(), testing::Contains(testing::HasSubstr(row.systemLog)));
        }
        checkSettings();
        checkLoginItem();
        EXPECT_EQ(integrityOf(session.store()), "ok");
        EXPECT_EQ(messagesIn(session.store()), delivered);
    }

private:
    /// The settings of a user who has gone through them before the last preference came.
    static constexpr const char* usersSettings =
        "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nnote=not ours\n";
    static constexpr const char* usersSettingsCompleted =
        "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nloginItemEnabled=true\n"
        "note=not ours\n";
    static constexpr const char* firstSettings =
        "[General]\ncapturingEnabled=true\nfourDigitInclude=true\nloginItemEnabled=true\n";
    /// The entry of an older version, which the user has not touched.
    static constexpr const char* usersEntry = "[Desktop Entry]\nType=Application\nName=Orlimo\n"
                                              "Exec=/usr/bin/orlimo --launched-at-login\n";

    [[nodiscard]] ProgramSession::Settings sessionSettings()
    {
        auto environment = preloadEnvironment(
            {ORLIMO_FAULT_INJECTOR, "libnss_wrapper.so", ORLIMO_SYSLOG_RECORDER});
        environment.insert({
            {"DISPLAY", server.display()},
            {"QT_QPA_PLATFORM", "xcb"},
            {"ORLIMO_FAULTS", row.rules},
            {"ORLIMO_FAULTS_SWITCH", switchFile.string()},
            {"ORLIMO_FAULTS_RECORD", recordFile.string()},
        });
        if (row.hasBus) {
            bus.emplace(makePrivateFolder(folder.path() / "bus"));
            environment["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
        }
        if (row.hasCompositor) {
            const auto socket = folder.path() / "compositor";
            compositor = std::make_unique<ScriptedCompositor>(socket, ScriptedCompositor::Script());
            environment["WAYLAND_DISPLAY"] = socket.string();
        }
        return {
            // No window opens by itself then, for want of a tray.
            .arguments = {"--launched-at-login"},
            .environment = environment,
        };
    }

    [[nodiscard]] bool ends() const { return row.status || row.signal; }

    [[nodiscard]] bool isRegistered() const
    {
        const auto entry = session.autostartEntry();
        return std::filesystem::exists(entry) && contentOf(entry) != usersEntry;
    }

    /// Whether a program that pastes gets `code`, from the compositor or from the X server.
    [[nodiscard]] bool isOnClipboard(const std::string& code) const
    {
        if (compositor) {
            PipeReader reader(compositor->paste());
            if (reader.awaitEnd() && reader.content() == code) {
                return true;
            }
        }
        return server.paste("clipboard") == code;
    }

    void expectLines(const std::vector<std::string>& lines)
    {
        if (!row.losesOutput) {
            for (const std::string& line : lines) {
                EXPECT_EQ(session.program().readLine(), line) << session.program().errors();
            }
        }
    }

    void checkEnd()
    {
        if (ends()) {
            const auto end = session.program().awaitEnd();
            EXPECT_EQ(end.status, row.status);
            EXPECT_EQ(end.signal, row.signal);
        } else {
            EXPECT_TRUE(session.program().isRunning());
            session.program().terminate();
        }
    }

    /// Expects that `file` is there or not, and no other beside it.
    static void expectAlone(const std::filesystem::path& file, bool exists)
    {
        std::vector<std::filesystem::path> files;
        if (std::filesystem::exists(file.parent_path())) {
            for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
                files.push_back(entry.path());
            }
        }
        EXPECT_EQ(files, exists ? std::vector{file} : std::vector<std::filesystem::path>{});
    }

    void checkSettings() const
    {
        const bool exists = row.settings != FaultRow::Settings::none;
        expectAlone(session.preferences(), exists);
        if (exists) {
            const char* const completed = row.hasFiles ? usersSettingsCompleted : firstSettings;
            EXPECT_EQ(
                contentOf(session.preferences()),
                row.settings == FaultRow::Settings::unchanged ? usersSettings : completed);
        }
    }

    void checkLoginItem() const
    {
        const auto entry = session.autostartEntry();
        expectAlone(entry, row.loginItem != FaultRow::LoginItem::none);
        if (row.loginItem == FaultRow::LoginItem::unchanged) {
            EXPECT_EQ(contentOf(entry), usersEntry);
        } else if (row.loginItem == FaultRow::LoginItem::registered) {
            const std::string content = contentOf(entry);
            EXPECT_THAT(content, testing::StartsWith("[Desktop Entry]\n"));
            EXPECT_THAT(content, testing::EndsWith("Terminal=false\n"));
        }
    }

    const FaultRow& row;
    const XServer& server;
    TemporaryFolder folder;
    std::filesystem::path switchFile = folder.path() / "faulty";
    std::filesystem::path recordFile = folder.path() / "record";
    std::optional<MessageBus> bus;
    std::unique_ptr<ScriptedCompositor> compositor;
    ProgramSession session;
    int delivered = 0;
};

} // namespace orlimo
