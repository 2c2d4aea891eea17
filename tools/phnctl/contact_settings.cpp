// The settings of a contact that belong to its numbers go with them.
#include "phnctl/contact_fields.h"
#include "phnctl/number.h"

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

// The position of a number that `from` has, or else `otherwise`, in `to`. A number that is not there any more leaves
// its setting to the one that is in its place.
std::size_t Moved(std::size_t position, const Entry& from, const Entry* otherwise, const Entry& to)
{
    const std::string* number = NumberAt(from, position);
    if (!number && otherwise)
        number = NumberAt(*otherwise, position);
    const std::size_t moved = number ? PositionOf(*number, to, position) : 0;
    return moved != 0 ? moved : NumberAt(to, position) ? position : 0;
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

// Lays the dials of an entry over those that are there. Where a list gives a dial to a number that its own entry does
// not have, somebody has moved the number and left the list behind: such a list takes no dial away. A dial
// belongs to one number.
void LayOver(Dials& dials, const Entry& from, const Entry* otherwise, const Entry& numbers)
{
    const Dials own = DialsOf(from);
    bool isLeftBehind = false;
    for (std::size_t position = 1; position <= kPositions; ++position)
        isLeftBehind = isLeftBehind || (own[position - 1] != "0" && !NumberAt(from, position));
    Dials laid;
    for (std::size_t position = 1; position <= kPositions; ++position) {
        const std::size_t moved = Moved(position, from, otherwise, numbers);
        const bool isSaid = own[position - 1] != "0" || (!isLeftBehind && NumberAt(from, position));
        if (moved != 0 && isSaid)
            laid[moved - 1] = own[position - 1];
    }
    for (std::size_t i = 0; i < kPositions; ++i) {
        const bool isTaken = dials[i] != "0" && std::find(laid.begin(), laid.end(), dials[i]) != laid.end();
        if (!laid[i].empty() || isTaken)
            dials[i] = laid[i].empty() ? "0" : laid[i];
    }
}

std::string SpeedDials(const Entry& numbers, const Entry& wanted, const Entry* replaced)
{
    Dials dials;
    dials.fill("0");
    if (replaced)
        LayOver(dials, *replaced, nullptr, numbers);
    if (wanted.Find(kSpeedDials))
        LayOver(dials, wanted, replaced, numbers);
    return fmt::format("{}", fmt::join(dials, ","));
}

std::size_t DefaultPosition(const Entry& numbers, const Entry& from, const Entry* otherwise)
{
    const std::string* const position = from.Find(kDefault);
    const auto number = position ? ParseNumber(*position, kPositions) : std::nullopt;
    return number ? Moved(static_cast<std::size_t>(*number), from, otherwise, numbers) : 0;
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
    std::size_t position = DefaultPosition(values, wanted, replaced);
    if (position == 0 && replaced)
        position = DefaultPosition(values, *replaced, nullptr);
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
