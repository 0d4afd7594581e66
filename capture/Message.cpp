#include "capture/Message.h"

#include "capture/BodyDecoding.h"
#include "capture/CodeExtraction.h"
#include "capture/PreferenceKeys.h"
#include "platform/process/FatalStop.h"
#include "platform/process/LogLine.h"

#include <system_error>
#include <utility>

namespace orlimo {

namespace {

/// How many of the newest messages are looked at.
constexpr std::int64_t examinedMessages = 10;

/// A message's words: its text, an empty one included, or what its body holds, if it can be
/// decoded.
std::optional<std::string> wordsOf(const Msg& message)
{
    if (message.text) {
        return message.text;
    }
    if (!message.attributedBody) {
        fatalStop("a message has neither text nor body");
    }
    return decodeAttributedBody(*message.attributedBody);
}

} // namespace

std::shared_ptr<Message> Message::create(CaptureHost host)
{
    return std::shared_ptr<Message>(new Message(std::move(host)));
}

Message::Message(CaptureHost captureHost)
    : host(std::move(captureHost))
    , libraryDirectoryField(host.libraryFolder())
{}

bool Message::registFileObserver()
{
    writeLogLine("registFileObserver");
    const auto library = host.libraryFolder();
    if (!library) {
        fatalStop("the user has no Library folder");
    }
    try {
        host.makeFileMonitor(*library / "Messages/chat.db-wal")->setDelegate(weak_from_this());
    } catch (const std::system_error&) {
        writeLogLine("file access not allowed");
        readyField = false;
        return false;
    }
    readyField = true;
    writeLogLine("file access allowed");
    return true;
}

std::optional<std::string> Message::checkMessages()
{
    if (!readyField) {
        writeLogLine("not ready to access disk");
        return std::nullopt;
    }
    writeLogLine("ready to access disk");
    auto code = newestCode();
    setVerificationCode(code.value_or("No Code"));
    return code;
}

std::optional<std::string> Message::newestCode()
{
    for (const Msg& message : host.database.fetchMessages(examinedMessages)) {
        const auto words = wordsOf(message);
        if (auto code = words ? extractCode(*words, host.userDefaults) : std::nullopt) {
            return code;
        }
    }
    return std::nullopt;
}

void Message::fileDidChange()
{
    if (!host.userDefaults.boolForKey(preference::capturingEnabled)) {
        return;
    }
    const auto code = checkMessages();
    if (!code) {
        return;
    }
    writeLogLine("file changed!! at message: code? " + *code);
    host.pasteboard.declareTypes({PasteboardType::string});
    host.pasteboard.setString(verificationCodeField, PasteboardType::string);
}

void Message::setText(std::string newText)
{
    Q_EMIT objectWillChange();
    textField = std::move(newText);
}

void Message::setVerificationCode(std::string code)
{
    Q_EMIT objectWillChange();
    verificationCodeField = std::move(code);
}

} // namespace orlimo
