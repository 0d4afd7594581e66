#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/TestSandbox.h"

#include <cstdint>
#include <cstdlib>
#include <string>

#include <unistd.h>

// What libFuzzer calls.

namespace {

/// The standard error of the start: the fuzzer may close the target's own later.
int reportDescriptor = STDERR_FILENO;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    static const orlimo::TestSandbox sandbox;
    reportDescriptor = ::dup(STDERR_FILENO);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto finding = orlimo::checkInput({reinterpret_cast<const char*>(data), size});
    if (finding) {
        const std::string report = "FINDING: " + *finding + "\n";
        (void)!::write(reportDescriptor, report.data(), report.size());
        std::abort();
    }
    return 0;
}
