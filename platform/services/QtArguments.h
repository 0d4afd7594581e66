#pragma once

#include <string>
#include <vector>

namespace orlimo {

/// The arguments with which Qt's application object is made. Made once, before that object, and
/// kept as long as it.
class QtArguments
{
public:
    /// The arguments as main() gets them, and behind them `additional` ones.
    QtArguments(int argc, const char* const* argv, const std::vector<std::string>& additional = {})
        : texts(argv, argv + argc)
    {
        texts.insert(texts.end(), additional.begin(), additional.end());
        for (std::string& text : texts) {
            pointers.push_back(text.data());
        }
        number = static_cast<int>(pointers.size());
        pointers.push_back(nullptr);
    }
    QtArguments(const QtArguments&) = delete;
    QtArguments& operator=(const QtArguments&) = delete;
    ~QtArguments() = default;

    /// What the application object is given, which may take arguments away.
    [[nodiscard]] int& count() { return number; }
    [[nodiscard]] char** values() { return pointers.data(); }

private:
    std::vector<std::string> texts;
    std::vector<char*> pointers;
    int number = 0;
};

} // namespace orlimo
