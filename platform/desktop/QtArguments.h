#pragma once

#include <string>
#include <vector>

namespace orlimo {

/// The arguments with which the toolkit's application object is made: the program's own, and behind
/// them what the host's session asks for. Made once, before that object, and kept as long as it.
class QtArguments
{
public:
    /// The arguments as main() gets them.
    QtArguments(int argc, const char* const* argv);
    QtArguments(const QtArguments&) = delete;
    QtArguments& operator=(const QtArguments&) = delete;
    ~QtArguments() = default;

    /// What the application object is given, which may take arguments away.
    [[nodiscard]] int& count() { return number; }
    [[nodiscard]] char** values() { return pointers.data(); }

private:
    std::vector<std::string> texts;
    std::vector<char*> pointers;
    int number;
};

} // namespace orlimo
