#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

OutputCapture::OutputCapture()
    : file(std::tmpfile())
{
    (void)std::fflush(stdout);
    saved = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    EXPECT_NE(file, nullptr);
    EXPECT_GE(::dup2(::fileno(file), STDOUT_FILENO), 0);
}

OutputCapture::~OutputCapture()
{
    (void)std::fflush(stdout);
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    (void)std::fclose(file);
}

std::string OutputCapture::text() const
{
    (void)std::fflush(stdout);
    return contentOf(file);
}

std::vector<std::string> OutputCapture::lines() const
{
    return linesOf(text());
}

std::string contentOf(std::FILE* file)
{
    std::string content;
    std::array<char, 65536> part{};
    for (;;) {
        const ssize_t got =
            ::pread(::fileno(file), part.data(), part.size(), static_cast<off_t>(content.size()));
        if (got <= 0) {
            return content;
        }
        content.append(part.data(), static_cast<std::size_t>(got));
    }
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace orlimo
