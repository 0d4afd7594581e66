#include "tests/capture/MemoryUserDefaults.h"

namespace orlimo {

namespace {

std::string printed(bool value)
{
    return value ? "true" : "false";
}

} // namespace

bool MemoryUserDefaults::boolForKey(std::string_view key) const
{
    made.push_back("read " + std::string(key));
    const auto found = values.find(key);
    return found != values.end() && found->second;
}

void MemoryUserDefaults::setBool(bool value, std::string_view key)
{
    made.push_back("write " + std::string(key) + " = " + printed(value));
    values.insert_or_assign(std::string(key), value);
}

std::map<std::string, std::string> MemoryUserDefaults::dictionaryRepresentation() const
{
    made.emplace_back("list");
    std::map<std::string, std::string> dictionary;
    for (const auto& [key, value] : values) {
        dictionary.emplace(key, printed(value));
    }
    return dictionary;
}

} // namespace orlimo
