#include "phnctl/contacts/merge.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/origin.h"

#include <algorithm>
#include <iterator>

namespace phnctl {

using namespace contact_property;

namespace {

bool HaveSameValue(const EntryField& one, const EntryField& other)
{
    return IsAddress(one.property) == IsAddress(other.property) && one.value == other.value;
}

// The places for a new value, the one that it asks for first. No other number goes where a fax machine answers.
std::vector<std::string> PlacesFor(const EntryField& wanted)
{
    if (wanted.hasAnyPlace)
        return {std::begin(kAnyNumberPlaces), std::end(kAnyNumberPlaces)};
    std::vector<std::string> places{wanted.property};
    if (IsAddress(wanted.property))
        places.insert(places.end(), {kEmail, kEmail2});
    else if (wanted.property != kFax)
        places.insert(places.end(), std::rbegin(kAnyNumberPlaces), std::rend(kAnyNumberPlaces));
    return places;
}

class Merger
{
public:
    Merger(const Entry& wanted, const Entry& present, const std::string& origin)
        : m_wanted(wanted), m_present(present), m_origin(origin)
    {
        for (const EntryField& field : present.fields)
            if (IsNumberOrAddress(field.property))
                m_held.push_back({field.property, field.value, nullptr});
        for (const EntryField& field : wanted.fields)
            if (IsNumberOrAddress(field.property))
                m_new.push_back(&field);
    }

    Merged Merge()
    {
        Meet([](const Held& held, const EntryField& field) { return held.place == field.property; });
        Meet([](const Held&, const EntryField&) { return true; });
        MoveWhereNothingStays();
        std::erase_if(m_new, [&](const EntryField* field) { return TakeOwnPlace(*field); });
        for (const EntryField* field : m_new)
            TakeOtherPlace(*field);
        Finish();
        return std::move(m_merged);
    }

private:
    struct Held
    {
        std::string place;
        std::string value;
        const EntryField* wish; // what the card says of it; null: nothing
    };

    // Each value that both have meets once.
    template <class Condition>
    void Meet(const Condition& condition)
    {
        std::erase_if(m_new, [&](const EntryField* field) {
            const auto same = std::find_if(m_held.begin(), m_held.end(), [&](const Held& held) {
                return !held.wish && HaveSameValue({held.place, held.value}, *field) && condition(held, *field);
            });
            if (same != m_held.end())
                same->wish = field;
            return same != m_held.end();
        });
    }

    void MoveWhereNothingStays()
    {
        std::vector<Held*> moving;
        for (Held& held : m_held)
            if (held.wish && !held.wish->hasAnyPlace && held.wish->property != held.place)
                moving.push_back(&held);
        const auto isBlocked = [&](const Held* mover) {
            const Held* const there = At(mover->wish->property);
            return there && Stays(*there) && std::find(moving.begin(), moving.end(), there) == moving.end();
        };
        // What cannot move is in the way of others.
        auto blocked = std::find_if(moving.begin(), moving.end(), isBlocked);
        while (blocked != moving.end()) {
            moving.erase(blocked);
            blocked = std::find_if(moving.begin(), moving.end(), isBlocked);
        }
        std::vector<std::string> taken;
        for (Held* held : moving) {
            taken.push_back(held->wish->property);
            held->place = held->wish->property;
        }
        std::erase_if(m_held, [&](const Held& held) {
            return !held.wish && std::find(taken.begin(), taken.end(), held.place) != taken.end();
        });
    }

    // A value of the card takes the place only of what the card was made of.
    bool Stays(const Held& held) const { return held.wish || !HadValue(m_origin, {held.place, held.value}); }

    Held* At(std::string_view place)
    {
        const auto held =
            std::find_if(m_held.begin(), m_held.end(), [&](const Held& other) { return other.place == place; });
        return held == m_held.end() ? nullptr : &*held;
    }

    bool Take(const EntryField& field, const std::string& place)
    {
        Held* const there = At(place);
        if (there && Stays(*there))
            return false;
        if (there)
            *there = {place, field.value, &field};
        else
            m_held.push_back({place, field.value, &field});
        return true;
    }

    bool TakeOwnPlace(const EntryField& field) { return !field.hasAnyPlace && Take(field, field.property); }

    void TakeOtherPlace(const EntryField& field)
    {
        const std::vector<std::string> places = PlacesFor(field);
        auto place = std::find_if(places.begin(), places.end(), [&](const std::string& other) { return !At(other); });
        if (place == places.end())
            place =
                std::find_if(places.begin(), places.end(), [&](const std::string& other) { return !At(other)->wish; });
        if (place == places.end() || !Take(field, *place))
            m_merged.leftOut.push_back(field);
        else if (!field.hasAnyPlace)
            m_merged.displaced.push_back({field, *place});
    }

    // In the order of the places that the contact had.
    void Finish()
    {
        const std::string* const name = m_present.Find(kName);
        const std::string* const newName = m_wanted.Find(kName);
        Entry result;
        if (newName && (!name || HadValue(m_origin, {kName, *name})))
            result.fields.push_back({kName, *newName});
        else if (name)
            result.fields.push_back({kName, *name});
        for (const EntryField& field : m_present.fields)
            if (IsNumberOrAddress(field.property))
                Emit(result, field.property);
        while (!m_held.empty())
            Emit(result, std::string(m_held.front().place));
        m_merged.entry = WithSettings(std::move(result), m_wanted, &m_present);
    }

    void Emit(Entry& result, const std::string& place)
    {
        const auto held =
            std::find_if(m_held.begin(), m_held.end(), [&](const Held& other) { return other.place == place; });
        if (held == m_held.end())
            return;
        result.fields.push_back({held->place, held->value});
        if (!held->wish)
            m_merged.kept.push_back(result.fields.back());
        m_held.erase(held);
    }

    const Entry& m_wanted;
    const Entry& m_present;
    const std::string& m_origin;
    std::vector<Held> m_held;
    std::vector<const EntryField*> m_new; // what the card has and the contact has not
    Merged m_merged;
};

} // namespace

Merged MergeContacts(const Entry& wanted, const Entry& present, const std::string& origin)
{
    return Merger(wanted, present, origin).Merge();
}

std::vector<std::string> NumbersAndAddresses(const Entry& contact)
{
    std::vector<std::string> values;
    for (const EntryField& field : contact.fields)
        if (IsNumberOrAddress(field.property))
            values.push_back(field.value);
    return values;
}

} // namespace phnctl
