#include "capture/Message.h"

#include "capture/BodyDecoding.h"
#include "capture/CodeExtraction.h"
#include "capture/Preferences.h"
#include "platform/process/FatalStop.h"
#include "platform/process/LogLine.h"

#include <system_error>
#include <utility>

namespace orlimo {

namespace {

/// How many of the newest messages are examined.
constexpr std::int64_t maxCheckedMessages = 10;

/// A message's text, even if it is empty, or the text of its body, if that can be decoded.
std::optional<std::string> textOf(const Msg& message)
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

std::shared_ptr<Message> Message::create(CaptureServices services)
{
    return std::shared_ptr<Message>(new Message(std::move(services)));
}

Message::Message(CaptureServices captureServices)
    : services(std::move(captureServices))
    , libraryDirectoryField(services.libraryFolder())
{}

bool Message::registFileObserver()
{
    writeLogLine("registFileObserver");
    const auto library = services.libraryFolder();
    if (!library) {
        fatalStop("the user has no Library folder");
    }
    try {
        services.makeFileMonitor(*library / "Messages/chat.db-wal")->setDelegate(weak_from_this());
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
    for (const Msg& message : services.database.fetchMessages(maxCheckedMessages)) {
        const auto messageText = textOf(message);
        if (auto code =
                messageText ? extractCode(*messageText, services.userDefaults) : std::nullopt) {
            return code;
        }
    }
    return std::nullopt;
}

void Message::fileDidChange()
{
    if (!services.userDefaults.boolForKey(preference::capturingEnabled)) {
        return;
    }
    const auto code = checkMessages();
    if (!code) {
        return;
    }
    writeLogLine("file changed!! at message: code? " + *code);
    services.pasteboard.declareTypes({PasteboardType::string});
    services.pasteboard.setString(verificationCodeField, PasteboardType::string);
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
