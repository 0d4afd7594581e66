#include "tests/soak/SoakRecord.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace orlimo {

namespace {

constexpr double bytesPerKib = 1024;

double inSeconds(std::chrono::milliseconds time)
{
    return std::chrono::duration<double>(time).count();
}

double inMilliseconds(std::chrono::microseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

} // namespace

double SoakRecord::bytesPerCheck() const
{
    const auto count = static_cast<double>(looks.size());
    double checks = 0;
    double memory = 0;
    for (const Look& look : looks) {
        checks += static_cast<double>(look.checks) / count;
        memory += static_cast<double>(look.usage.anonymous) / count;
    }
    double together = 0;
    double alone = 0;
    for (const Look& look : looks) {
        const double distance = static_cast<double>(look.checks) - checks;
        together += distance * (static_cast<double>(look.usage.anonymous) - memory);
        alone += distance * distance;
    }
    return alone > 0 ? together / alone * bytesPerKib : 0;
}

std::string SoakRecord::summary(std::size_t rows) const
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(1);
    text << messages << " messages, " << expected << " codes to copy, " << missed << " missed\n"
         << windowOpenings << " openings of the window, " << preferenceChanges
         << " changes of preferences from outside, " << clipboardLosses
         << " times the clipboard was another's, " << trayRestarts << " new trays\n";
    if (!delays.empty()) {
        auto sorted = delays;
        std::ranges::sort(sorted);
        text << "from commit to copied: median " << inMilliseconds(sorted[sorted.size() / 2])
             << " ms, longest " << inMilliseconds(sorted.back()) << " ms\n";
    }
    text << "one compiled statement: " << statementCost << " bytes; each check added "
         << bytesPerCheck() << " bytes\n";
    text << " seconds  checks  descriptors  threads  resident KiB  anonymous KiB\n";
    const std::size_t step = std::max<std::size_t>(1, (looks.size() + rows - 1) / rows);
    for (std::size_t index = 0; index < looks.size(); ++index) {
        if (index % step != 0 && index + 1 != looks.size()) {
            continue;
        }
        const Look& look = looks[index];
        text << std::setw(8) << inSeconds(look.time) << std::setw(8) << look.checks << std::setw(13)
             << look.usage.descriptors << std::setw(9) << look.usage.threads << std::setw(14)
             << look.usage.resident << std::setw(15) << look.usage.anonymous << '\n';
    }
    return text.str();
}

} // namespace orlimo
