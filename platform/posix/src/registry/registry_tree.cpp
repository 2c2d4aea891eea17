#include "registry/registry_tree.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "base/lower_case.h"
#include "registry/registry_text.h"

namespace platform {
namespace {

constexpr std::string_view kHeading4 = "REGEDIT4";
constexpr std::string_view kHeading5 = "Windows Registry Editor Version 5.00"; // strings in hex: are UTF-16 then
constexpr std::string_view kRoot = "hkey_local_machine";
constexpr size_t kMaxPath = 1024;

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r";
    const size_t first = text.find_first_not_of(kBlanks);
    return first == text.npos ? std::string_view() : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The lines of a text, trimmed. Hexadecimal data may go on behind a backslash at a line's end.
class Lines
{
public:
    explicit Lines(std::string_view text) : rest_(text) {}

    std::optional<std::string> Next()
    {
        if (rest_.empty())
            return std::nullopt;
        std::string line(TakeLine());
        while (line.ends_with('\\') && line.find("=hex") != line.npos && !rest_.empty()) {
            line.pop_back();
            line += TakeLine();
        }
        return line;
    }

private:
    std::string_view TakeLine()
    {
        const size_t end = std::min(rest_.find('\n'), rest_.size());
        const std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return Trimmed(line);
    }

    std::string_view rest_;
};

// Takes a quoted string, in which a backslash stands before a quote and a backslash, off the text's front.
std::optional<std::string> TakeQuoted(std::string_view& text)
{
    if (!text.starts_with('"'))
        return std::nullopt;
    std::string string;
    for (size_t i = 1; i < text.size(); i++) {
        if (text[i] == '"') {
            text.remove_prefix(i + 1);
            return string;
        }
        if (text[i] == '\\' && ++i == text.size())
            break;
        string += text[i];
    }
    return std::nullopt;
}

std::optional<DWORD> HexNumber(std::string_view digits)
{
    DWORD number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    const bool whole = error == std::errc() && stop == digits.data() + digits.size();
    return whole ? std::optional(number) : std::nullopt;
}

std::optional<std::string> HexBytes(std::string_view list)
{
    std::string bytes;
    while (!list.empty()) {
        const size_t end = std::min(list.find(','), list.size());
        const auto number = HexNumber(Trimmed(list.substr(0, end)));
        if (!number || *number > 0xFF)
            return std::nullopt;
        bytes += static_cast<char>(*number);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return bytes;
}

bool IsString(DWORD type)
{
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

// dword:0000000a, hex:01,02 or hex(7):61,00,00
bool ReadTypedData(std::string_view text, bool hasWideStrings, RegistryValue& value)
{
    const size_t colon = text.find(':');
    if (colon == text.npos)
        return false;
    const std::string kind = LowerCase(text.substr(0, colon));
    text.remove_prefix(colon + 1);
    if (kind == "dword") {
        const auto number = HexNumber(text);
        value.type = REG_DWORD;
        if (number)
            value.data.assign(reinterpret_cast<const char*>(&*number), sizeof *number);
        return number.has_value();
    }
    std::optional<DWORD> type;
    if (kind == "hex")
        type = REG_BINARY;
    else if (kind.starts_with("hex(") && kind.ends_with(')'))
        type = HexNumber(std::string_view(kind).substr(4, kind.size() - 5));
    auto bytes = HexBytes(text);
    if (!type || !bytes)
        return false;
    value.type = *type;
    value.data = hasWideStrings && IsString(*type) ? AnsiFromUtf16(*bytes) : std::move(*bytes);
    return true;
}

bool ReadValue(std::string_view line, bool hasWideStrings, RegistryValue& value)
{
    if (line.starts_with('@')) {
        line.remove_prefix(1);
    } else if (auto name = TakeQuoted(line)) {
        value.name = std::move(*name);
    } else {
        return false;
    }
    line = Trimmed(line);
    if (!line.starts_with('='))
        return false;
    line = Trimmed(line.substr(1));
    if (auto string = TakeQuoted(line)) {
        value.type = REG_SZ;
        value.data = std::move(*string);
        value.data += '\0';
        return true;
    }
    return ReadTypedData(line, hasWideStrings, value);
}

// The key of a section's line and its ancestors; null for a key that lies elsewhere or is no key.
RegistryKey* AddKey(std::string_view line, RegistryTree& tree)
{
    if (!line.ends_with(']') || line.size() > kMaxPath)
        return nullptr;
    std::string path = LowerCase(line.substr(1, line.size() - 2));
    if (!path.starts_with(kRoot) || (path.size() > kRoot.size() && path[kRoot.size()] != '\\'))
        return nullptr;
    path.erase(0, kRoot.size() + 1);
    for (size_t end = path.find('\\'); end != path.npos; end = path.find('\\', end + 1))
        tree.try_emplace(path.substr(0, end));
    return &tree[path];
}

} // namespace

const RegistryValue* RegistryKey::Find(std::string_view name) const
{
    const auto found = indexes_.find(LowerCase(name));
    return found == indexes_.end() ? nullptr : &values_[found->second];
}

void RegistryKey::Set(RegistryValue value)
{
    const auto [place, added] = indexes_.try_emplace(LowerCase(value.name), values_.size());
    if (added)
        values_.push_back(std::move(value));
    else
        values_[place->second] = std::move(value);
}

bool AddRegistry(std::string_view text, RegistryTree& tree)
{
    Lines lines(text);
    const auto heading = lines.Next();
    if (heading != kHeading4 && heading != kHeading5)
        return false;
    RegistryKey* key = nullptr;
    while (const auto line = lines.Next()) {
        RegistryValue value;
        if (line->starts_with('['))
            key = AddKey(*line, tree);
        else if (key && ReadValue(*line, heading == kHeading5, value))
            key->Set(std::move(value));
    }
    return true;
}

} // namespace platform
