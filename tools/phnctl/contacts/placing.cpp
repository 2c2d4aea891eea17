#include "phnctl/contacts/placing.h"

#include "phnctl/contacts/contact.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace phnctl {

using namespace contact_property;

namespace {

// No other number goes where a fax machine answers.
constexpr const char* kVoicePlaces[] = {kCell, kHome, kWork, kMobile2};

using Places = std::vector<std::string>;

bool HaveSameValue(const EntryField& one, const EntryField& other)
{
    return IsAddress(one.property) == IsAddress(other.property) && one.value == other.value;
}

class Placer
{
public:
    Placer(const std::vector<EntryField>& wanted, const std::vector<EntryField>& present)
        : m_wanted(wanted), m_present(present)
    {
        for (const EntryField& field : present)
            m_held.push_back({field, std::nullopt, true});
        for (std::size_t at = 0; at < wanted.size(); ++at)
            m_open.push_back(at);
    }

    Placement Run()
    {
        Meet([](const EntryField& held, const EntryField& wish) { return held == wish; });
        Meet(HaveSameValue);
        MoveWhereNothingStays();
        std::erase_if(m_open, [&](std::size_t at) { return TakeFirstFree(at, {m_wanted[at].property}); });
        for (const std::size_t at : m_open)
            TakeFirstFree(at, OtherPlacesFor(m_wanted[at].property));
        return Finish();
    }

private:
    struct Held
    {
        EntryField field;
        std::optional<std::size_t> wish; // the wanted value that it is
        bool isOfContact;
    };

    // Each value that both have meets once.
    template <class Condition>
    void Meet(const Condition& areSame)
    {
        std::erase_if(m_open, [&](std::size_t at) {
            const auto same = std::ranges::find_if(
                m_held, [&](const Held& held) { return !held.wish && areSame(held.field, m_wanted[at]); });
            if (same != m_held.end())
                same->wish = at;
            return same != m_held.end();
        });
    }

    const std::string& WantedPlace(const Held& held) const { return m_wanted[*held.wish].property; }

    void MoveWhereNothingStays()
    {
        std::vector<Held*> moving;
        for (Held& held : m_held)
            if (held.wish && WantedPlace(held) != kAnyNumber && WantedPlace(held) != held.field.property)
                moving.push_back(&held);
        const auto isBlocked = [&](const Held* mover) {
            const Held* const there = At(WantedPlace(*mover));
            return there && std::ranges::find(moving, there) == moving.end();
        };
        // What cannot move is in the way of others.
        for (auto blocked = std::ranges::find_if(moving, isBlocked); blocked != moving.end();
             blocked = std::ranges::find_if(moving, isBlocked))
            moving.erase(blocked);
        for (Held* const held : moving)
            held->field.property = WantedPlace(*held);
    }

    const Held* At(std::string_view place) const
    {
        const auto held =
            std::ranges::find_if(m_held, [&](const Held& other) { return other.field.property == place; });
        return held == m_held.end() ? nullptr : &*held;
    }

    // What the contact keeps out of a place may go to any that is free; of two of the card's own in one place only a
    // second mobile number and a second address have another.
    Places OtherPlacesFor(const std::string& wanted) const
    {
        if (wanted == kAnyNumber)
            return {std::begin(kVoicePlaces), std::end(kVoicePlaces)};
        if (!At(wanted)->isOfContact)
            return wanted == kCell ? Places{kMobile2} : wanted == kEmail ? Places{kEmail2} : Places{};
        if (IsAddress(wanted))
            return {kEmail, kEmail2};
        return wanted == kFax ? Places{} : Places{std::rbegin(kVoicePlaces), std::rend(kVoicePlaces)};
    }

    bool TakeFirstFree(std::size_t at, const Places& places)
    {
        const auto free =
            std::ranges::find_if(places, [&](const std::string& place) { return place != kAnyNumber && !At(place); });
        if (free != places.end())
            m_held.push_back({{*free, m_wanted[at].value}, at, false});
        return free != places.end();
    }

    Placement Finish()
    {
        Placement placement{{}, {}, std::vector<Placed>(m_wanted.size())};
        std::ranges::stable_sort(m_held, {}, [](const Held& held) { return held.isOfContact ? 0 : *held.wish + 1; });
        const auto emit = [&](const Held& held) {
            placement.values.push_back(held.field);
            if (held.wish)
                placement.placed[*held.wish] = {held.field.property, !held.isOfContact};
            else
                placement.kept.push_back(held.field);
        };
        for (const EntryField& field : m_present)
            if (const Held* const held = At(field.property))
                emit(*held);
        for (const Held& held : m_held)
            if (std::ranges::find(m_present, held.field.property, &EntryField::property) == m_present.end())
                emit(held);
        return placement;
    }

    const std::vector<EntryField>& m_wanted;
    const std::vector<EntryField>& m_present;
    std::vector<Held> m_held;
    std::vector<std::size_t> m_open; // of the wanted values
};

} // namespace

Placement Place(const std::vector<EntryField>& wanted, const std::vector<EntryField>& present)
{
    return Placer(wanted, present).Run();
}

} // namespace phnctl
