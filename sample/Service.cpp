#include "sample/Service.h"

#include "sample/ArchivedBody.h"

#include <cctype>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orlimo::sample {

namespace {

char escapedCharacter(std::string_view& remaining)
{
    const char kind = remaining.empty() ? '\0' : remaining.front();
    if (kind == 'x' && remaining.size() >= 3 &&
        std::isxdigit(static_cast<unsigned char>(remaining[1])) != 0 &&
        std::isxdigit(static_cast<unsigned char>(remaining[2])) != 0)
    {
        const int value = std::stoi(std::string(remaining.substr(1, 2)), nullptr, 16);
        remaining.remove_prefix(3);
        return static_cast<char>(value);
    }
    remaining.remove_prefix(remaining.empty() ? 0 : 1);
    switch (kind) {
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case '\\':
        return '\\';
    default:
        throw std::runtime_error("unknown escape in the text");
    }
}

std::string unescaped(std::string_view escaped)
{
    std::string text;
    while (!escaped.empty()) {
        const char next = escaped.front();
        escaped.remove_prefix(1);
        text.push_back(next == '\\' ? escapedCharacter(escaped) : next);
    }
    return text;
}

std::string append(SampleStore& store, const SampleMessage& message)
{
    const bool inTransaction = store.isInTransaction();
    const std::int64_t row = store.append(message);
    return (inTransaction ? "added " : "committed ") + std::to_string(row);
}

std::string execute(SampleStore& store, std::string_view command, std::string_view argument)
{
    if (command == "text") {
        return append(store, {.text = unescaped(argument)});
    }
    if (command == "body") {
        const auto body = archivedBody(unescaped(argument), ArchivedString::mutableString);
        return append(store, {.attributedBody = body});
    }
    if (command == "immutable") {
        const auto body = archivedBody(unescaped(argument), ArchivedString::immutableString);
        return append(store, {.attributedBody = body});
    }
    if (command == "commit") {
        store.commit();
        return "committed";
    }
    if (command == "rollback") {
        store.rollback();
        return "rolled back";
    }
    if (command == "begin") {
        store.begin();
    } else if (command == "spill") {
        store.spill();
    } else if (command == "truncate") {
        store.truncateLog();
    } else if (command == "sql") {
        store.run(std::string(argument));
    } else {
        throw std::runtime_error("unknown command \"" + std::string(command) + "\"");
    }
    return "ok";
}

} // namespace

void serve(SampleStore& store, std::istream& input, std::ostream& output)
{
    output << "ready" << std::endl;
    for (std::string line; std::getline(input, line) && line != "quit";) {
        const std::size_t space = line.find(' ');
        const std::string_view lineView = line;
        const auto argument =
            space == std::string::npos ? std::string_view() : lineView.substr(space + 1);
        try {
            output << execute(store, lineView.substr(0, space), argument) << std::endl;
        } catch (const std::exception& error) {
            output << "error: " << error.what() << std::endl;
        }
    }
}

} // namespace orlimo::sample
