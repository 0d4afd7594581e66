#include "tests/capture/stores/StoreFiles.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace orlimo {

std::map<std::string, std::string> storeFiles(const std::filesystem::path& libraryFolder)
{
    std::map<std::string, std::string> files;
    for (const char* name : {"chat.db", "chat.db-wal"}) {
        const auto file = libraryFolder / "Messages" / name;
        if (!std::filesystem::exists(file)) {
            continue;
        }
        const ForkedRun reading = runForked([&] {
            const std::string content = contentOf(file);
            (void)std::fwrite(content.data(), 1, content.size(), stdout);
        });
        EXPECT_EQ(reading.status, 0);
        EXPECT_EQ(reading.output.size(), std::filesystem::file_size(file));
        files.emplace(name, reading.output);
    }
    return files;
}

std::vector<std::string> namesIn(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace orlimo
