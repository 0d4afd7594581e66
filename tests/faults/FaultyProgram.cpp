#include "tests/faults/FaultyProgram.h"

#include "tests/platform/process/PipeReader.h"
#include "tests/support/BuiltRecorder.h"
#include "tests/support/StoreIntegrity.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace orlimo {

using testing::ElementsAreArray;
using testing::HasSubstr;

namespace {

/// The settings of a user who has gone through them before the last preference came.
constexpr const char* usersSettings =
    "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nnote=not ours\n";
constexpr const char* usersSettingsCompleted =
    "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nloginItemEnabled=true\nnote=not "
    "ours\n";
constexpr const char* firstSettings =
    "[General]\ncapturingEnabled=true\nfourDigitInclude=true\nloginItemEnabled=true\n";

/// The entry of an older version, which the user has not touched.
constexpr const char* usersEntry = "[Desktop Entry]\nType=Application\nName=Orlimo\n"
                                   "Exec=/usr/bin/orlimo --launched-at-login\n";

/// What is in `folder` beside the files of these names.
std::vector<std::string>
othersIn(const std::filesystem::path& folder, const std::vector<std::string>& names)
{
    std::vector<std::string> others;
    if (std::filesystem::exists(folder)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            const std::string name = entry.path().filename();
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                others.push_back(name);
            }
        }
    }
    return others;
}

} // namespace

FaultyProgram::FaultyProgram(const FaultRow& faultRow, const XServer& xServer)
    : row(faultRow)
    , server(xServer)
    , switchFile(folder.path() / "faulty")
    , recordFile(folder.path() / "record")
    , bus(row.hasBus ? std::make_unique<MessageBus>(makePrivateFolder(folder.path() / "bus"))
                     : nullptr)
    , compositor(
          row.hasCompositor ? std::make_unique<ScriptedCompositor>(folder.path() / "compositor")
                            : nullptr)
    , session(sessionSettings())
{
    if (row.hasFiles) {
        writeFiles();
    }
    session.startWriter();
    if (row.hasEmptyLog) {
        EXPECT_EQ(session.writer().ask("truncate"), "ok");
    }
}

ProgramSession::Settings FaultyProgram::sessionSettings() const
{
    auto environment =
        preloadEnvironment({ORLIMO_FAULT_INJECTOR, "libnss_wrapper.so", ORLIMO_SYSLOG_RECORDER});
    environment.insert({
        {"DISPLAY", server.display()},
        {"QT_QPA_PLATFORM", "xcb"},
        {"ORLIMO_FAULTS", row.rules},
        {"ORLIMO_FAULTS_SWITCH", switchFile.string()},
        {"ORLIMO_FAULTS_RECORD", recordFile.string()},
    });
    if (bus) {
        environment["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
    }
    if (compositor) {
        environment["WAYLAND_DISPLAY"] = (folder.path() / "compositor").string();
    }
    return {
        // No window opens by itself then, for want of a tray.
        .arguments = {"--launched-at-login"},
        .environment = environment,
    };
}

void FaultyProgram::writeFiles() const
{
    writeFile(session.preferences(), usersSettings);
    writeFile(session.autostartEntry(), usersEntry);
}

void FaultyProgram::start()
{
    if (row.phase == FaultRow::Phase::fromStart) {
        writeFile(switchFile, "");
    }
    session.startProgram();
}

void FaultyProgram::expectLines(const std::vector<std::string>& lines)
{
    if (row.losesOutput) {
        return;
    }
    for (const std::string& line : lines) {
        EXPECT_EQ(session.program().readLine(), line) << session.program().errors();
    }
}

void FaultyProgram::checkStart()
{
    expectLines(row.start.value_or(ProgramSession::startUpLines()));
    if (row.losesOutput) {
        // It watches the store by then.
        EXPECT_TRUE(await([this] { return isRegistered(); }));
    }
}

void FaultyProgram::injectFault()
{
    // The last that the start leaves behind.
    EXPECT_TRUE(await([&] { return isRegistered() || row.phase == FaultRow::Phase::fromStart; }));
    writeFile(switchFile, "");
    if (row.endsBus) {
        bus->end();
    }
}

bool FaultyProgram::isRegistered() const
{
    const auto entry = session.autostartEntry();
    return std::filesystem::exists(entry) && contentOf(entry) != usersEntry;
}

void FaultyProgram::checkReaction(const Reaction& reaction, const std::string& code)
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

bool FaultyProgram::isOnClipboard(const std::string& code) const
{
    if (compositor) {
        UniqueFd end = compositor->paste();
        PipeReader reader(std::move(end));
        if (reader.awaitEnd() && reader.content() == code) {
            return true;
        }
    }
    return server.paste("clipboard") == code;
}

void FaultyProgram::removeFault() const
{
    std::filesystem::remove(switchFile);
}

void FaultyProgram::checkOutcome()
{
    EXPECT_TRUE(row.endsBus || std::filesystem::exists(recordFile)) << "the fault did not happen";
    checkEnd();
    // Nothing is printed beside what was expected.
    if (!row.losesOutput && !ends()) {
        EXPECT_EQ(session.program().readLine(std::chrono::milliseconds(0)), std::nullopt);
    }
    const std::string errors = session.program().errors();
    if (row.errors.empty()) {
        EXPECT_EQ(errors, "");
    } else {
        EXPECT_THAT(errors, HasSubstr(row.errors));
    }
    if (row.systemLog.empty()) {
        EXPECT_THAT(session.systemLog(), testing::IsEmpty());
    } else {
        EXPECT_THAT(session.systemLog(), testing::Contains(HasSubstr(row.systemLog)));
    }
    checkSettings();
    checkLoginItem();
    checkStore();
}

void FaultyProgram::checkEnd()
{
    if (ends()) {
        const auto end = session.program().awaitEnd();
        EXPECT_EQ(end.status, row.status);
        EXPECT_EQ(end.signal, row.signal);
        return;
    }
    EXPECT_TRUE(session.program().isRunning());
    session.program().terminate();
}

void FaultyProgram::checkSettings() const
{
    const bool exists = std::filesystem::exists(session.preferences());
    EXPECT_EQ(exists, row.settings != FaultRow::Settings::none);
    if (exists) {
        const char* const completed = row.hasFiles ? usersSettingsCompleted : firstSettings;
        EXPECT_EQ(
            contentOf(session.preferences()),
            row.settings == FaultRow::Settings::unchanged ? usersSettings : completed);
    }
    EXPECT_THAT(
        othersIn(session.preferences().parent_path(), {session.preferences().filename()}),
        testing::IsEmpty());
}

void FaultyProgram::checkLoginItem() const
{
    const auto entry = session.autostartEntry();
    const bool exists = std::filesystem::exists(entry);
    EXPECT_EQ(exists, row.loginItem != FaultRow::LoginItem::none);
    if (exists && row.loginItem == FaultRow::LoginItem::unchanged) {
        EXPECT_EQ(contentOf(entry), usersEntry);
    } else if (exists) {
        const std::string content = contentOf(entry);
        EXPECT_THAT(content, testing::StartsWith("[Desktop Entry]\n"));
        EXPECT_THAT(content, testing::EndsWith("Terminal=false\n"));
    }
    EXPECT_THAT(othersIn(entry.parent_path(), {entry.filename()}), testing::IsEmpty());
}

void FaultyProgram::checkStore()
{
    EXPECT_EQ(integrityOf(session.store()), "ok");
    EXPECT_EQ(messagesIn(session.store()), delivered);
}

} // namespace orlimo
