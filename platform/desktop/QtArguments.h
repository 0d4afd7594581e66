#pragma once

#include <string>
#include <vector>

namespace orlimo {

/// The arguments for Qt's application object: the program's own, followed by those that the session
/// requires. Created once, before that object, which it must outlive.
class QtArguments
{
public:
    /// Takes the arguments of main().
    QtArguments(int argc, const char* const* argv);
    QtArguments(const QtArguments&) = delete;
    QtArguments& operator=(const QtArguments&) = delete;
    ~QtArguments() = default;

    /// For the application object, which may remove arguments.
    [[nodiscard]] int& count() { return number; }
    [[nodiscard]] char** values() { return pointers.data(); }

private:
    std::vector<std::string> texts;
    std::vector<char*> pointers;
    int number;
};

} // namespace orlimo
