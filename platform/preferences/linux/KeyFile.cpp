#include "platform/preferences/linux/KeyFile.h"

#include <utility>

#include <glib.h>

namespace orlimo {

namespace {

struct Free
{
    void operator()(gchar* text) const { g_free(text); }
    void operator()(gchar** list) const { g_strfreev(list); }
};
using Text = std::unique_ptr<gchar, Free>;
using TextList = std::unique_ptr<gchar*, Free>;

std::string trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\v\f";
    const auto first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string()
               : std::string(text.substr(first, text.find_last_not_of(blanks) + 1 - first));
}

} // namespace

void KeyFile::Release::operator()(_GKeyFile* released) const
{
    g_key_file_unref(released);
}

KeyFile::KeyFile()
    : file(g_key_file_new())
{}

std::optional<KeyFile> KeyFile::parse(const std::string& text)
{
    // GLib would end a line at a zero byte.
    if (text.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    constexpr auto keepAll =
        static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    KeyFile result;
    return g_key_file_load_from_data(
               result.file.get(), text.data(), text.size(), keepAll, nullptr) != FALSE
               ? std::optional(std::move(result))
               : std::nullopt;
}

std::vector<std::string> KeyFile::keys(const std::string& group) const
{
    gsize count = 0;
    const TextList found(g_key_file_get_keys(file.get(), group.c_str(), &count, nullptr));
    return found ? std::vector<std::string>(found.get(), found.get() + count)
                 : std::vector<std::string>();
}

std::optional<std::string> KeyFile::value(const std::string& group, const std::string& key) const
{
    const Text found(g_key_file_get_value(file.get(), group.c_str(), key.c_str(), nullptr));
    return found ? std::optional(trimmed(found.get())) : std::nullopt;
}

void KeyFile::setValue(const std::string& group, const std::string& key, const std::string& value)
{
    g_key_file_set_value(file.get(), group.c_str(), key.c_str(), value.c_str());
}

void KeyFile::setSortedValue(
    const std::string& group, const std::string& key, const std::string& value)
{
    if (this->value(group, key)) {
        setValue(group, key, value);
        return;
    }
    // GLib has no call for this, but writes each line in one form.
    std::string lines = text();
    const std::string header = "[" + group + "]\n";
    std::size_t position = std::string::npos;
    bool isInGroup = false;
    for (std::size_t begin = 0; begin < lines.size();) {
        const std::size_t end = lines.find('\n', begin) + 1;
        const std::string line = lines.substr(begin, end - begin);
        const bool isHeader = line.starts_with('[');
        isInGroup = isHeader ? line == header : isInGroup;
        const std::size_t equals = line.find('=');
        const bool isLesserKey =
            equals != std::string::npos && !line.starts_with('#') && line.substr(0, equals) < key;
        if (isInGroup && (isHeader || isLesserKey)) {
            position = end;
        }
        begin = end;
    }
    auto changed = position == std::string::npos
                       ? std::nullopt
                       : parse(lines.insert(position, key + "=" + value + "\n"));
    if (changed) {
        *this = std::move(*changed);
    } else {
        setValue(group, key, value);
    }
}

void KeyFile::setString(const std::string& group, const std::string& key, const std::string& text)
{
    g_key_file_set_string(file.get(), group.c_str(), key.c_str(), text.c_str());
    const Text escaped(g_key_file_get_value(file.get(), group.c_str(), key.c_str(), nullptr));
    // What GLib escapes at the beginning alone counts anywhere to some desktops.
    std::string value(escaped.get());
    for (auto tab = value.find('\t'); tab != std::string::npos; tab = value.find('\t')) {
        value.replace(tab, 1, R"(\t)");
    }
    if (value.ends_with(' ')) {
        value.replace(value.size() - 1, 1, R"(\s)");
    }
    setValue(group, key, value);
}

std::string KeyFile::text() const
{
    gsize length = 0;
    const Text data(g_key_file_to_data(file.get(), &length, nullptr));
    return {data.get(), length};
}

} // namespace orlimo
