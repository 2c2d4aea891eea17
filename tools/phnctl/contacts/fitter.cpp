#include "phnctl/contacts/fitter.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/number.h"
#include "phnctl/contacts/placing.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>
#include <optional>
#include <string_view>

namespace phnctl {

using namespace contact_property;

namespace {

constexpr std::size_t kNameUnits = 36; // of the first word of a name, and of the rest
constexpr std::size_t kValueUnits = 52;

bool IsNumber(std::string_view property)
{
    return property == kAnyNumber || NumberPosition(property) != 0;
}

class Fitter
{
public:
    Candidate Fit(const std::vector<Wish>& wishes)
    {
        for (const Wish& wish : wishes)
            Take(wish);
        PlaceValues();
        return Finish();
    }

private:
    void Take(const Wish& wish)
    {
        if (wish.property == kName)
            TakeName(wish);
        else if (IsNumber(wish.property))
            TakeNumber(wish);
        else if (IsId(wish.property) || wish.property == kDefault)
            TakeId(wish);
        else if (wish.property == kSpeedDials)
            TakeSpeedDials(wish);
        else
            TakeAddress(wish);
    }

    void TakeName(const Wish& wish)
    {
        const std::string name = OneLine(wish.value);
        if (name.empty() || m_result.entry.Find(kName))
            return;
        const std::size_t space = name.find(' ');
        const std::string first = name.substr(0, space);
        const std::string rest = space == std::string::npos ? "" : name.substr(space + 1);
        const std::string cutFirst = CutToUnits(first, kNameUnits);
        const std::string cutRest = CutToUnits(rest, kNameUnits);
        std::string fitting = rest.empty() ? cutFirst : cutFirst + ' ' + cutRest;
        if (cutFirst != first || cutRest != rest)
            Tell("name-cut", wish,
                 fmt::format("cut to '{}': the handset keeps {} characters of the first word and of the rest", fitting,
                             kNameUnits));
        if (!TryToHandset(fitting))
            Refuse("no-place-in-code-page", wish,
                   fmt::format("'{}' holds characters that have no place in the handset library's code page", fitting));
        m_result.entry.fields.push_back({kName, OneLine(fitting)});
    }

    void TakeNumber(const Wish& wish)
    {
        const auto number = NumberOf(wish.value);
        if (!number)
            return Tell("number-not-dialable", wish, fmt::format("'{}' is no number that can be dialled", wish.value));
        if (number->size() > kValueUnits)
            return Tell("number-too-long", wish, fmt::format("'{}' has more than {} digits", wish.value, kValueUnits));
        if (IsRewritten(wish.value, *number))
            Tell("number-rewritten", wish, fmt::format("'{}' is stored as '{}'", wish.value, *number));
        if (!number->empty())
            Want(wish, *number);
    }

    void TakeAddress(const Wish& wish)
    {
        const std::string address = OneLine(wish.value);
        if (address.empty())
            return;
        if (CutToUnits(address, kValueUnits) != address)
            Tell("address-too-long", wish, fmt::format("'{}' has more than {} characters", address, kValueUnits));
        else if (!TryToHandset(address))
            Tell("no-place-in-code-page", wish,
                 fmt::format("'{}' holds characters that have no place in the handset library's code page", address));
        else
            Want(wish, address);
    }

    void TakeId(const Wish& wish)
    {
        const std::string text = OneLine(wish.value);
        const bool isNegative = text.starts_with('-');
        const auto number = ParseNumber(std::string_view(text).substr(isNegative ? 1 : 0), 0x7FFFFFFF);
        if (text.empty())
            return;
        if (!number)
            return Tell("not-a-number", wish, fmt::format("'{}' is no number", text));
        m_settings.push_back({wish.property, fmt::format("{}{}", isNegative ? "-" : "", *number)});
    }

    void TakeSpeedDials(const Wish& wish)
    {
        std::vector<std::string> numbers{""};
        for (const char c : wish.value) {
            if (c == ',')
                numbers.emplace_back();
            else if (c != ' ')
                numbers.back() += c;
        }
        const bool isList = numbers.size() == std::size(kNumberProperties) &&
                            std::all_of(numbers.begin(), numbers.end(),
                                        [](const std::string& text) { return ParseNumber(text, 0x7FFFFFFF); });
        if (isList)
            m_settings.push_back({kSpeedDials, fmt::format("{}", fmt::join(numbers, ","))});
        else if (!OneLine(wish.value).empty())
            Tell("no-speed-dial-list", wish, fmt::format("'{}' is no list of five numbers", wish.value));
    }

    void Want(const Wish& wish, std::string value)
    {
        m_wanted.push_back({wish.property, std::move(value)});
        m_wishes.push_back(&wish);
    }

    // As into a contact that holds nothing yet.
    void PlaceValues()
    {
        const std::vector<Placed> placed = Place(m_wanted, {}).placed;
        for (std::size_t at = 0; at < m_wanted.size(); ++at) {
            const auto& [property, value] = m_wanted[at];
            const std::string& place = placed[at].place;
            if (place.empty()) {
                Tell("one-too-many", *m_wishes[at],
                     fmt::format("'{}': the handset has no place for another one", value));
                continue;
            }
            m_result.entry.fields.push_back({place, value});
            m_hasValue = true;
            if (property == kAnyNumber)
                m_result.about.fields.push_back({place, kAnyNumber});
            if (m_wishes[at]->isPreferred && !m_preferred)
                m_preferred = place;
        }
    }

    Candidate Finish()
    {
        for (const char* property : {kGroup, kPicture, kRinger, kDefault, kSpeedDials})
            if (const std::string* value = Setting(property))
                m_result.entry.fields.push_back({property, *value});
        if (m_preferred && !Setting(kDefault))
            if (const auto at = NumberPosition(*m_preferred))
                m_result.entry.fields.push_back({kDefault, std::to_string(at)});
        TellSettingsWithoutNumbers();
        if (!m_hasValue)
            Refuse("no-number", {}, "the handset keeps no contact without a number or an address");
        return std::move(m_result);
    }

    // The default number and the speed dials name places.
    void TellSettingsWithoutNumbers()
    {
        const Entry complete = CompleteContact(m_result.entry, nullptr);
        for (const char* property : {kDefault, kSpeedDials}) {
            const std::string* const asked = Setting(property);
            const std::string* const held = complete.Find(property);
            if (asked && *asked != "0" && (!held || *held != *asked))
                m_result.notes.push_back(
                    {"no-number-there", property, 0,
                     fmt::format("'{}' is for a number that the card does not have; the setting stays with "
                                 "the number that has it on the handset",
                                 *asked)});
        }
    }

    const std::string* Setting(std::string_view property) const
    {
        const auto found = std::find_if(m_settings.begin(), m_settings.end(),
                                        [&](const EntryField& field) { return field.property == property; });
        return found == m_settings.end() ? nullptr : &found->value;
    }

    void Tell(const char* code, const Wish& wish, std::string text)
    {
        m_result.notes.push_back({code, wish.source, wish.line, std::move(text)});
    }

    void Refuse(const char* code, const Wish& wish, std::string text)
    {
        Tell(code, wish, std::move(text));
        m_result.fits = false;
    }

    Candidate m_result;
    std::vector<EntryField> m_wanted;  // numbers and addresses
    std::vector<const Wish*> m_wishes; // which said so
    std::vector<EntryField> m_settings;
    std::optional<std::string> m_preferred;
    bool m_hasValue = false;
};

} // namespace

Candidate FitContact(const std::vector<Wish>& wishes)
{
    return Fitter().Fit(wishes);
}

Entry StorableContact(const Entry& read)
{
    std::vector<Wish> wishes;
    for (const EntryField& field : read.fields)
        wishes.push_back({field.property, field.value, field.property});
    return CompleteContact(FitContact(wishes).entry, nullptr);
}

} // namespace phnctl
