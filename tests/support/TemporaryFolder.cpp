#include "tests/support/TemporaryFolder.h"

#include "platform/files/UniqueFd.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace orlimo {

TemporaryFolder::TemporaryFolder()
{
    // By the name that systems and libraries give it, where its path leads through a link.
    const auto parent = std::filesystem::canonical(std::filesystem::temp_directory_path());
    std::string name = (parent / "orlimo-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    folder = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::filesystem::path makePrivateFolder(const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    return folder;
}

bool supportsFileName(const std::filesystem::path& file)
{
    const UniqueFd made(::open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
    return made && ::unlink(file.c_str()) == 0;
}

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << "cannot read " << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const std::filesystem::path& file, std::string_view content)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    ASSERT_TRUE(stream.good()) << "cannot write " << file;
}

void appendToFile(const std::filesystem::path& file, std::string_view content)
{
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    ASSERT_GE(descriptor, 0) << file;
    EXPECT_EQ(
        ::write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    ::close(descriptor);
}

} // namespace orlimo
