#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace orlimo {

/// Collects what this process writes to standard output while the object lives.
class OutputCapture
{
public:
    OutputCapture();
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;
    ~OutputCapture();

    /// Everything written so far, byte for byte.
    [[nodiscard]] std::string text() const;

    /// The same as lines. What does not end in a line break is a line too.
    [[nodiscard]] std::vector<std::string> lines() const;

private:
    int saved = -1;
    std::FILE* file;
};

/// Everything in `file`, read by position: where the process writes next stays as it is.
[[nodiscard]] std::string contentOf(std::FILE* file);

/// `text` cut at its line breaks.
[[nodiscard]] std::vector<std::string> linesOf(const std::string& text);

} // namespace orlimo
