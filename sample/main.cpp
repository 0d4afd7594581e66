#include "sample/ArchivedBody.h"
#include "sample/Delivery.h"
#include "sample/SampleStore.h"
#include "sample/Service.h"

#include <charconv>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace orlimo::sample {

namespace {

constexpr std::string_view usage = R"(Usage: orlimo-sample-store COMMAND STORE [OPTION...]

Simulates the Messages application: creates a message store of the real one's shape and writes to it.

  create STORE [--messages N]   make a store of N messages
  append STORE (--text TEXT | --body TEXT | --immutable-body TEXT)
                                add one message, and print its row
  deliver STORE [--interval SECONDS] [--count N] [--expected FILE] [--paced]
                                print "ready", then add a message after each interval, 2 seconds by
                                default, N times or without end, and print it; record the codes to
                                expect in FILE; with --paced each interval begins when a line has
                                arrived on standard input
  serve STORE [--messages N]    make a store of N messages, print "ready", then execute the commands
                                on standard input, one a line, with one line of response each:
                                  text TEXT, body TEXT, immutable TEXT
                                  begin, commit, rollback, spill, truncate, sql STATEMENTS, quit
                                In texts, \n, \t, \\ and \xHH are escapes for single characters.

  --synchronous off|normal|full when commits wait for the disk; full by default
  --help                        this text
)";

class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Whether the whole of `text` is a number, which is then in `number`.
template <typename Number> [[nodiscard]] bool parseNumber(const std::string& text, Number& number)
{
    const char* const end = text.data() + text.size();
    if constexpr (std::is_floating_point_v<Number>) {
        // Not every standard library has from_chars for such a number; strtod accepts more than is
        // meant here.
        char* stop = nullptr;
        number = std::strtod(text.c_str(), &stop);
        return !text.empty() && stop == end &&
               text.find_first_not_of("0123456789.") == std::string::npos;
    } else {
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        return error == std::errc() && stop == end;
    }
}

/// The command line: the command, the store, and options with their values.
class CommandLine
{
public:
    explicit CommandLine(std::vector<std::string> arguments)
    {
        std::vector<std::string> positional;
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            if (!arguments[index].starts_with("--")) {
                positional.push_back(arguments[index]);
            } else if (arguments[index] == "--paced") {
                options[arguments[index]] = "";
            } else if (index + 1 < arguments.size()) {
                options[arguments[index]] = arguments[index + 1];
                ++index;
            } else {
                throw UsageError(arguments[index] + " needs a value");
            }
        }
        if (positional.size() != 2) {
            throw UsageError("a command and a store are needed");
        }
        command = positional[0];
        store = positional[1];
    }

    [[nodiscard]] const std::string* take(const std::string& option)
    {
        const auto found = options.find(option);
        if (found == options.end()) {
            return nullptr;
        }
        consumed.push_back(options.extract(found));
        return &consumed.back().mapped();
    }

    /// The option's number; absent without the option. Throws if the value is no number.
    template <typename Number>
    [[nodiscard]] std::optional<Number> takeNumber(const std::string& option)
    {
        constexpr Number maximum = 1'000'000'000;
        const std::string* const value = take(option);
        if (value == nullptr) {
            return std::nullopt;
        }
        Number number{};
        if (!parseNumber(*value, number) || !(number >= 0 && number <= maximum)) {
            throw UsageError(option + " needs a number, not \"" + *value + "\"");
        }
        return number;
    }

    void rejectUnknownOptions() const
    {
        if (!options.empty()) {
            throw UsageError("unknown option " + options.begin()->first);
        }
    }

    std::string command;
    std::string store;

private:
    std::map<std::string, std::string> options;
    std::vector<std::map<std::string, std::string>::node_type> consumed;
};

Synchronous takeSynchronous(CommandLine& line)
{
    const std::string* const value = line.take("--synchronous");
    if (value == nullptr || *value == "full" || *value == "FULL") {
        return Synchronous::full;
    }
    if (*value == "normal" || *value == "NORMAL") {
        return Synchronous::normal;
    }
    if (*value == "off" || *value == "OFF") {
        return Synchronous::off;
    }
    throw UsageError("--synchronous is off, normal or full");
}

SampleMessage takeMessage(CommandLine& line)
{
    if (const auto* const text = line.take("--text")) {
        return {.text = *text};
    }
    if (const auto* const text = line.take("--body")) {
        return {.attributedBody = archivedBody(*text, ArchivedString::mutableString)};
    }
    if (const auto* const text = line.take("--immutable-body")) {
        return {.attributedBody = archivedBody(*text, ArchivedString::immutableString)};
    }
    throw UsageError("append needs --text, --body or --immutable-body");
}

DeliveryOptions takeDeliveryOptions(CommandLine& line)
{
    DeliveryOptions options;
    if (const auto interval = line.takeNumber<double>("--interval")) {
        options.interval = std::chrono::duration<double>(*interval);
    }
    options.count = line.takeNumber<long>("--count");
    if (const auto* const file = line.take("--expected")) {
        options.expected = *file;
    }
    options.paced = line.take("--paced") != nullptr;
    return options;
}

void execute(CommandLine& line)
{
    const Synchronous synchronous = takeSynchronous(line);
    if (line.command == "create" || line.command == "serve") {
        const auto messages = line.takeNumber<std::int64_t>("--messages").value_or(0);
        line.rejectUnknownOptions();
        SampleStore store(line.store, synchronous);
        store.fill(messages);
        if (line.command == "serve") {
            serve(store, std::cin, std::cout);
        } else {
            store.truncateLog();
        }
    } else if (line.command == "append") {
        const SampleMessage message = takeMessage(line);
        line.rejectUnknownOptions();
        std::cout << SampleStore(line.store, synchronous).append(message) << std::endl;
    } else if (line.command == "deliver") {
        const DeliveryOptions options = takeDeliveryOptions(line);
        line.rejectUnknownOptions();
        SampleStore store(line.store, synchronous);
        deliver(store, options, std::cin, std::cout);
    } else {
        throw UsageError("unknown command \"" + line.command + "\"");
    }
}

/// Executes the command line and returns the exit status.
int runProgram(std::vector<std::string> arguments)
{
    const auto isHelpOption = [](const std::string& argument) {
        return argument == "--help" || argument == "-h";
    };
    if (!arguments.empty() && (isHelpOption(arguments.front()) || isHelpOption(arguments.back()))) {
        std::cout << usage;
        return 0;
    }
    try {
        CommandLine line(std::move(arguments));
        execute(line);
        return 0;
    } catch (const UsageError& error) {
        std::cerr << "orlimo-sample-store: " << error.what() << "; see --help\n";
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "orlimo-sample-store: " << error.what() << '\n';
        return 1;
    }
}

} // namespace

} // namespace orlimo::sample

int main(int argc, char* argv[])
{
    return orlimo::sample::runProgram({argv + 1, argv + argc});
}
