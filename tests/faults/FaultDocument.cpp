#include "tests/faults/FaultDocument.h"

#include "tests/faults/FaultTable.h"
#include "tests/program/ProgramSession.h"

#include <algorithm>
#include <vector>

namespace orlimo {

namespace {

using Settings = FaultRow::Settings;
using LoginItem = FaultRow::LoginItem;

std::string code(const std::string& words)
{
    return "`" + words + "`";
}

bool ends(const FaultRow& row)
{
    return row.status || row.signal;
}

std::string reaction(const FaultRow& row, const Reaction& reaction)
{
    if (ends(row)) {
        return "–";
    }
    if (reaction.copies) {
        return "copied";
    }
    if (!reaction.lines) {
        return "not heard of";
    }
    return "not copied, " + code(reaction.lines->back());
}

/// The lines of the start that do not stand there without a fault.
std::vector<std::string> unusualLines(const FaultRow& row)
{
    const auto usual = ProgramSession::startUpLines();
    std::vector<std::string> lines;
    for (const std::string& line : row.start.value_or(usual)) {
        if (std::find(usual.begin(), usual.end(), line) == usual.end()) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::string end(const FaultRow& row)
{
    if (row.signal) {
        return "ends with signal " + std::to_string(*row.signal);
    }
    return row.status ? "ends with status " + std::to_string(*row.status) : "";
}

std::string otherEffects(const FaultRow& row)
{
    std::vector<std::string> facts;
    for (const std::string& line : unusualLines(row)) {
        facts.push_back("standard output: " + code(line));
    }
    if (row.losesOutput) {
        facts.emplace_back("the lines are lost");
    }
    if (!row.errors.empty()) {
        facts.push_back("standard error: " + code(row.errors + "…"));
    }
    if (!row.systemLog.empty()) {
        facts.push_back("system's log: " + code(row.systemLog + "…"));
    }
    if (!ends(row) && row.settings != Settings::complete) {
        facts.emplace_back(
            row.settings == Settings::none ? "no settings are stored" : "the settings stay");
    }
    if (!ends(row) && row.loginItem != LoginItem::registered) {
        facts.emplace_back(
            row.loginItem == LoginItem::none ? "no login item" : "the old login item stays");
    }
    facts.push_back(end(row));
    std::string text;
    for (const std::string& fact : facts) {
        text += (text.empty() || fact.empty() ? "" : "; ") + fact;
    }
    return text;
}

std::string line(const FaultRow& row)
{
    const bool isFromStart = row.phase == FaultRow::Phase::fromStart;
    return "| " + row.name + " | " + (isFromStart ? "the start" : "later on") + " | " +
           reaction(row, row.duringFault) + " | " + reaction(row, row.afterFault) + " | " +
           otherEffects(row) + " |\n";
}

} // namespace

std::string faultDocument()
{
    std::string text;
    for (const FaultGroup& group : faultTable()) {
        text += "\n### " + group.name + "\n\n";
        text += "| what fails | from | a message meanwhile | a message afterwards | and |\n";
        text += "|---|---|---|---|---|\n";
        for (const FaultRow& row : group.rows) {
            text += line(row);
        }
    }
    return text;
}

} // namespace orlimo
