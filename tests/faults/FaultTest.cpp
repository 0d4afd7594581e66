#include "tests/faults/FaultTable.h"
#include "tests/faults/FaultyProgram.h"

#include <gtest/gtest.h>

#include <cctype>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

/// The rows of one group run side by side, so that they wait for their throttles together.
class FaultGroupTest : public testing::TestWithParam<FaultGroup>
{
protected:
    void forEach(const auto& step)
    {
        for (auto& [row, program] : programs) {
            const testing::ScopedTrace trace(__FILE__, __LINE__, row->name);
            step(*row, *program);
        }
    }

    XServer server;
    std::vector<std::pair<const FaultRow*, std::unique_ptr<FaultyProgram>>> programs;
};

TEST_P(FaultGroupTest, EndsAsTheTableSays)
{
    for (const FaultRow& row : GetParam().rows) {
        programs.emplace_back(&row, std::make_unique<FaultyProgram>(row, server));
    }
    // Different codes, also between the rows, which share a clipboard.
    int code = 482'100;
    forEach([](const FaultRow&, FaultyProgram& program) { program.start(); });
    ProgramSession::waitForThrottle();
    forEach([](const FaultRow&, FaultyProgram& program) { program.injectFault(); });
    forEach([&](const FaultRow& row, FaultyProgram& program) {
        program.checkReaction(row.duringFault, std::to_string(++code));
    });
    forEach([](const FaultRow&, FaultyProgram& program) { program.removeFault(); });
    ProgramSession::waitForThrottle();
    forEach([&](const FaultRow& row, FaultyProgram& program) {
        program.checkReaction(row.afterFault, std::to_string(++code));
    });
    forEach([](const FaultRow&, FaultyProgram& program) { program.checkOutcome(); });
}

/// The name of the group as a test may bear it.
std::string nameOf(const testing::TestParamInfo<FaultGroup>& group)
{
    std::string name;
    for (const char letter : group.param.name) {
        name += std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
    }
    return name;
}

/// The first row of each group.
FaultGroup oneOfEach()
{
    FaultGroup slice{.name = "one of each", .rows = {}};
    for (const FaultGroup& group : faultTable()) {
        slice.rows.push_back(group.rows.front());
    }
    return slice;
}

INSTANTIATE_TEST_SUITE_P(Slice, FaultGroupTest, testing::Values(oneOfEach()), nameOf);
INSTANTIATE_TEST_SUITE_P(SlowTable, FaultGroupTest, testing::ValuesIn(faultTable()), nameOf);

} // namespace
} // namespace orlimo
