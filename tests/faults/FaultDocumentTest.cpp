#include "tests/faults/FaultDocument.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(FaultDocument, StandsInTheDocumentation)
{
    EXPECT_THAT(contentOf(ORLIMO_FAULT_DOCUMENT), testing::EndsWith(faultDocument()))
        << "docs/faults.md does not say what the table says; orlimo-fault-document prints it";
}

} // namespace
} // namespace orlimo
