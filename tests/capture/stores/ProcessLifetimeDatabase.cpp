#include "tests/capture/stores/ProcessLifetimeDatabase.h"

#include "tests/support/process/OutputCapture.h"

#include <memory>
#include <vector>

namespace orlimo {

Database& processLifetimeDatabase(std::optional<std::filesystem::path> libraryFolder)
{
    // Never destroyed, so that the connections stay reachable to the very end.
    static auto& kept = *new std::vector<std::unique_ptr<Database>>;
    const OutputCapture swallowed;
    return *kept.emplace_back(std::make_unique<Database>(libraryFolder));
}

} // namespace orlimo
