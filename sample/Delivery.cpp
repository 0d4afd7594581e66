#include "sample/Delivery.h"

#include "sample/SampleCycle.h"

#include <fstream>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>

namespace orlimo::sample {

namespace {

void recordCode(const std::filesystem::path& file, const std::string& code)
{
    std::ofstream stream(file, std::ios::app);
    stream << code << std::endl;
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

/// Waits until the next message is due. False if the input that sets the pace has ended.
bool waitForNext(SampleStore& store, const DeliveryOptions& options, std::istream& input)
{
    std::string line;
    if (options.paced && !std::getline(input, line)) {
        return false;
    }
    std::this_thread::sleep_for(options.interval);
    if (store.logSize() > options.maxLogSize) {
        try {
            store.truncateLog();
        } catch (const std::runtime_error&) { // NOLINT(bugprone-empty-catch)
            // A reader is active: retried after the next message.
        }
    }
    return true;
}

} // namespace

void deliver(
    SampleStore& store, const DeliveryOptions& options, std::istream& input, std::ostream& output)
{
    output << "ready" << std::endl;
    SampleCycle cycle;
    for (long number = 0; !options.count || number < *options.count; ++number) {
        if (!waitForNext(store, options, input)) {
            return;
        }
        const CycleMessage next = cycle.next();
        if (options.expected && next.code) {
            recordCode(*options.expected, *next.code);
        }
        store.append(next.message);
        output << next.description
               << (next.code ? " (expect " + *next.code + ")" : std::string(" (no code)"))
               << std::endl;
    }
}

} // namespace orlimo::sample
