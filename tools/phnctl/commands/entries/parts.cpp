#include "phnctl/commands/entries/parts.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

std::uint32_t ParseIndex(const std::string& text)
{
    const auto number = ParseNumber(text, 0xFFFFFFFF);
    if (!number)
        throw Failure(kUsage, fmt::format("'{}' is no index; allowed: a number such as 12", Printable(text)));
    return static_cast<std::uint32_t>(*number);
}

Entry ReadOne(const Handset& handset, const EntryKind& kind, std::uint32_t index)
{
    try {
        if (auto entry = kind.Read(handset, index))
            return std::move(*entry);
    } catch (const Refusal& refusal) {
        if (refusal.Code() != PHN_ERROR_INVALID_PARAMETER)
            throw;
        throw Refusal(PHN_ERROR_INVALID_PARAMETER,
                      fmt::format("the handset has no {} with index {}: its indexes end before; '{} list' shows them",
                                  kind.One(), index, kind.Many()));
    }
    throw Refusal(PHN_ERROR_NOT_FOUND, fmt::format("no {} is stored under index {}", kind.One(), index));
}

JsonObject EntryJson(const EntryKind& kind, const StoredEntry& stored)
{
    JsonList fields;
    for (const EntryField& field : stored.entry.fields)
        fields.push_back({JsonObject{{"property", {field.property}}, {"value", {field.value}}}});
    return {{"index", {std::int64_t{stored.index}}},
            {"title", {kind.Title(stored.entry)}},
            {"fields", {std::move(fields)}}};
}

Report Describe(const EntryKind& kind, const Entry& entry, const std::vector<Field>& details, std::vector<Field> before)
{
    Section section{"", "", std::move(before)};
    for (const EntryField& field : entry.fields) {
        const auto detail = std::ranges::find(details, field.property, &Field::key);
        section.fields.push_back(
            detail != details.end() ? *detail : Field(field.property, kind.Label(field.property), field.value));
    }
    return {{std::move(section)}};
}

int StatusOf(const Inventory& inventory)
{
    return inventory.unread.empty() ? kDone : kRefused;
}

std::string HelpText(const EntryKind& kind, std::string text)
{
    const std::pair<std::string, std::string> words[] = {
        {"{one}", kind.One()},
        {"{many}", kind.Many()},
        {"{ext}", kind.Extension()},
        {"{exts}", fmt::format("{}", fmt::join(kind.Extensions(), " or "))}};
    for (const auto& [mark, word] : words)
        for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + word.size()))
            text.replace(at, mark.size(), word);
    return text;
}

std::function<int(const Invocation&)> Bind(int (*function)(const Invocation&, const EntryKind&), const EntryKind& kind)
{
    return [function, &kind](const Invocation& invocation) { return function(invocation, kind); };
}

std::vector<CommandOption> Joined(std::vector<CommandOption> options, const std::vector<CommandOption>& more)
{
    options.insert(options.end(), more.begin(), more.end());
    return options;
}

} // namespace phnctl
