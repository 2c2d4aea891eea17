// The settings of a contact that belong to its numbers go with them.
#include "phnctl/contacts/contact.h"
#include "phnctl/text/number.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>

namespace phnctl {

using namespace contact_property;

namespace {

constexpr std::size_t kPositions = std::size(kNumberProperties);

using Dials = std::array<std::string, kPositions>;

const std::string* NumberAt(const Entry& entry, std::size_t position)
{
    return position >= 1 && position <= kPositions ? entry.Find(kNumberProperties[position - 1]) : nullptr;
}

// Where `to` has a number; of several places the one given, if it is among them. 0: nowhere.
std::size_t PositionOf(const std::string& number, const Entry& to, std::size_t position)
{
    if (const std::string* same = NumberAt(to, position); same && *same == number)
        return position;
    for (const EntryField& field : to.fields)
        if (NumberPosition(field.property) != 0 && field.value == number)
            return NumberPosition(field.property);
    return 0;
}

// The position in `to` of a number that `from` has at one. A number that is not there any more leaves its setting to
// the one that is in its place. 0: nowhere.
std::size_t Moved(std::size_t position, const Entry& from, const Entry& to)
{
    const std::string* const number = NumberAt(from, position);
    const std::size_t moved = number ? PositionOf(*number, to, position) : 0;
    return moved == 0 && number && NumberAt(to, position) ? position : moved;
}

Dials DialsOf(const Entry& entry)
{
    Dials dials;
    const std::string* const text = entry.Find(kSpeedDials);
    const std::string list = text ? *text : "";
    std::size_t begin = 0;
    for (std::string& dial : dials) {
        const std::size_t end = std::min(list.find(',', begin), list.size());
        dial = list.substr(std::min(begin, end), end - std::min(begin, end));
        dial = dial.empty() ? "0" : dial;
        begin = end + 1;
    }
    return dials;
}

// What the list of an entry says of the numbers; empty: nothing. Where it gives a dial to a number that the entry does
// not have, somebody has moved the number and left the list behind: then its zeros mean nothing.
Dials SaidOf(const Entry& from, const Entry& numbers)
{
    const Dials list = DialsOf(from);
    bool isLeftBehind = false;
    for (std::size_t position = 1; position <= kPositions; ++position)
        isLeftBehind = isLeftBehind || (list[position - 1] != "0" && !NumberAt(from, position));
    Dials said;
    for (std::size_t position = 1; position <= kPositions; ++position)
        if (const std::size_t moved = Moved(position, from, numbers))
            said[moved - 1] = isLeftBehind && list[position - 1] == "0" ? "" : list[position - 1];
    return said;
}

// A dial belongs to one number.
void LayOver(Dials& dials, const Dials& said)
{
    for (std::size_t i = 0; i < kPositions; ++i) {
        const bool isTaken = dials[i] != "0" && std::find(said.begin(), said.end(), dials[i]) != said.end();
        if (!said[i].empty() || isTaken)
            dials[i] = said[i].empty() ? "0" : said[i];
    }
}

std::string SpeedDials(const Entry& numbers, const Entry& wanted, const Entry* replaced)
{
    Dials dials;
    dials.fill("0");
    if (replaced)
        LayOver(dials, SaidOf(*replaced, numbers));
    if (wanted.Find(kSpeedDials))
        LayOver(dials, SaidOf(wanted, numbers));
    return fmt::format("{}", fmt::join(dials, ","));
}

std::size_t DefaultPosition(const Entry& numbers, const Entry& from)
{
    const std::string* const text = from.Find(kDefault);
    const auto position = text ? ParseNumber(*text, kPositions) : std::nullopt;
    return position ? Moved(static_cast<std::size_t>(*position), from, numbers) : 0;
}

} // namespace

Entry WithSettings(Entry values, const Entry& wanted, const Entry* replaced)
{
    std::vector<EntryField> settings;
    for (const char* property : {kGroup, kPicture, kRinger}) {
        const std::string* value = wanted.Find(property);
        if (!value && replaced)
            value = replaced->Find(property);
        settings.push_back({property, value ? *value : "0"});
    }
    std::size_t position = DefaultPosition(values, wanted);
    if (position == 0 && replaced)
        position = DefaultPosition(values, *replaced);
    if (position != 0)
        settings.push_back({kDefault, std::to_string(position)});
    settings.push_back({kSpeedDials, SpeedDials(values, wanted, replaced)});
    values.fields.insert(values.fields.end(), settings.begin(), settings.end());
    return values;
}

Entry CompleteContact(const Entry& wanted, const Entry* replaced)
{
    Entry values;
    for (const EntryField& field : wanted.fields)
        if (!IsId(field.property) && field.property != kDefault && field.property != kSpeedDials)
            values.fields.push_back(field);
    return WithSettings(std::move(values), wanted, replaced);
}

} // namespace phnctl
