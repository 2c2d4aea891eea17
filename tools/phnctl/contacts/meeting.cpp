#include "phnctl/contacts/meeting.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/merge.h"
#include "phnctl/contacts/name_key.h"
#include "phnctl/plan/meeting.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <set>

namespace phnctl {

using namespace contact_property;

namespace {

// The name; what has none goes by its first number or address.
std::string KeyOf(const Entry& contact)
{
    const std::string* const name = contact.Find(kName);
    return name ? "name " + NameKey(*name) : contact.fields.empty() ? "" : "value " + contact.fields.front().value;
}

bool HaveValueInCommon(const Entry& one, const Entry& other)
{
    const std::vector<EntryField> values = ValuesOf(one);
    return std::ranges::any_of(ValuesOf(other), [&](const EntryField& field) {
        return std::ranges::find(values, field.value, &EntryField::value) != values.end();
    });
}

class ContactMeeting
{
public:
    ContactMeeting(const EntryKind& kind, const Inventory& inventory, Filling filling)
        : m_kind(kind), m_isMerge(filling == Filling::Merge), m_presents(StorableOf(kind, inventory))
    {
        for (const StoredEntry& present : m_presents) {
            m_byKey.emplace(KeyOf(present.entry), &present.entry);
            for (const EntryField& field : ValuesOf(present.entry))
                m_byValue.emplace(field.value, &present.entry);
        }
    }

    Plan Meet(std::vector<Candidate> cards)
    {
        std::set<std::string> seen;
        for (const Candidate& card : cards)
            if (card.isMeant && seen.insert(card.entry.Text()).second)
                ++m_cards[KeyOf(card.entry)];
        const auto outcome = [&](const Candidate& card, const Entry& present) { return OutcomeOf(card, present); };
        Plan plan = phnctl::Meet(m_kind, {KeyOf, outcome}, std::move(cards), m_presents);
        if (m_isMerge)
            LeaveOutWhatAnotherHolds(plan);
        for (PlannedEntry& planned : plan.entries)
            if (planned.action == Action::Add)
                ++m_additions[KeyOf(planned.from.entry)];
        for (PlannedEntry& planned : plan.entries)
            if (planned.action == Action::Add)
                TellOthers(planned);
        return plan;
    }

private:
    // A card of which another one of the same name leaves every value on the handset adds nothing: two accounts may
    // hold a person with one number each. Of two with the same values the first stays.
    static void LeaveOutWhatAnotherHolds(Plan& plan)
    {
        std::multimap<std::pair<std::string, std::string>, const PlannedEntry*> held; // by key and value
        for (const PlannedEntry& planned : plan.entries)
            for (const EntryField& field : ValuesOf(planned.target))
                held.emplace(std::pair(KeyOf(planned.target), field.value), &planned);
        for (PlannedEntry& planned : plan.entries) {
            const std::vector<EntryField> values = ValuesOf(planned.target);
            if (planned.action != Action::Add || values.empty())
                continue;
            const auto [first, last] = held.equal_range({KeyOf(planned.target), values.front().value});
            const bool isHeld = std::any_of(first, last, [&](const auto& item) {
                const PlannedEntry& other = *item.second;
                const bool stays =
                    other.action != Action::Add || ValuesOf(other.target).size() > values.size() || &other < &planned;
                return &other != &planned && stays && HoldsAll(other.target, values);
            });
            if (isHeld) {
                planned.action = Action::Same;
                planned.Tell("repeated", "another card of this name holds all of it");
            }
        }
    }

    static bool HoldsAll(const Entry& contact, const std::vector<EntryField>& values)
    {
        const std::vector<EntryField> held = ValuesOf(contact);
        return std::ranges::all_of(values, [&](const EntryField& field) {
            return std::ranges::find(held, field.value, &EntryField::value) != held.end();
        });
    }

    bool MayBeOne(const Candidate& card, const Entry& present) const
    {
        if (HaveValueInCommon(card.entry, present))
            return true;
        const std::string key = KeyOf(card.entry);
        return m_cards.at(key) == 1 && m_byKey.count(key) == 1;
    }

    std::optional<Outcome> OutcomeOf(const Candidate& card, const Entry& present) const
    {
        if (!MayBeOne(card, present))
            return std::nullopt;
        if (!m_isMerge)
            return Outcome{CompleteContact(card.entry, &present)};
        Merged merged = MergeContacts(card, present);
        if (!merged.leftOut.empty())
            return std::nullopt;
        return Outcome{merged.entry, NotesOn(merged, card)};
    }

    std::vector<Note> NotesOn(const Merged& merged, const Candidate& card) const
    {
        std::vector<Note> notes;
        for (const Displaced& displaced : merged.displaced) {
            const std::string wanted = m_kind.Label(displaced.wanted.property);
            notes.push_back({"other-place", "", card.line,
                             fmt::format("{} {} is stored as {}, as {} is taken", wanted, displaced.wanted.value,
                                         m_kind.Label(displaced.place), wanted)});
        }
        const bool isOne = merged.kept.size() == 1;
        if (!merged.kept.empty())
            notes.push_back({kKept, "", card.line,
                             fmt::format("{}: only the handset has {}; --replace takes {} off", ListOf(merged.kept),
                                         isOne ? "it, and it stays" : "them, and they stay", isOne ? "it" : "them")});
        return notes;
    }

    // Of a card that is added: the contacts that may be the same person all the same.
    void TellOthers(PlannedEntry& planned) const
    {
        const Entry& card = planned.from.entry;
        const std::string key = KeyOf(card);
        for (const EntryField& field : ValuesOf(card))
            if (const Entry* const other = OtherWith(field.value, key)) {
                planned.Tell("shared-number", fmt::format("another contact of the handset has {}: {}; both are kept",
                                                          field.value, m_kind.Title(*other)));
                break;
            }
        const std::vector<EntryField> noRoom = NoRoomFor(planned.from);
        const bool isOnHandset = m_byKey.contains(key);
        if (!noRoom.empty())
            planned.Tell("namesake", fmt::format("the contact of this name on the handset has no free place for {}, "
                                                 "so it is added beside that",
                                                 ListOf(noRoom)));
        else if (isOnHandset || m_additions.at(key) > 1)
            planned.Tell("namesake",
                         fmt::format("another contact of this name is {} and is not taken for the same; both are kept",
                                     isOnHandset ? "on the handset" : "in the files"));
    }

    const Entry* OtherWith(const std::string& value, const std::string& key) const
    {
        const auto [first, last] = m_byValue.equal_range(value);
        const auto other = std::find_if(first, last, [&](const auto& item) { return KeyOf(*item.second) != key; });
        return other == last ? nullptr : other->second;
    }

    // What kept a card from going into the contact that it means.
    std::vector<EntryField> NoRoomFor(const Candidate& card) const
    {
        std::vector<EntryField> noRoom;
        const auto [first, last] = m_byKey.equal_range(KeyOf(card.entry));
        for (auto item = first; item != last && m_isMerge; ++item)
            if (MayBeOne(card, *item->second))
                noRoom = MergeContacts(card, *item->second).leftOut;
        return noRoom;
    }

    std::string ListOf(const std::vector<EntryField>& fields) const
    {
        std::string text;
        for (const EntryField& field : fields)
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", m_kind.Label(field.property), field.value);
        return text;
    }

    using Index = std::multimap<std::string, const Entry*>;

    const EntryKind& m_kind;
    const bool m_isMerge;
    const std::vector<StoredEntry> m_presents; // in the form in which entries are compared
    Index m_byKey;
    Index m_byValue;
    std::map<std::string, std::size_t> m_cards;     // how many different ones of a key the files hold
    std::map<std::string, std::size_t> m_additions; // how many of a key the plan adds
};

} // namespace

std::vector<Note> NotesOnKin(const EntryKind& kind, const Entry& typed, const Inventory& inventory)
{
    std::vector<Note> notes;
    bool isShared = false;
    for (const auto& [index, entry] : StorableOf(kind, inventory)) {
        if (KeyOf(entry) == KeyOf(typed)) {
            notes.push_back({"namesake", "", 0,
                             fmt::format("the handset has a contact of this name already, at index {0}; 'phnctl "
                                         "contacts edit {0}' changes that one",
                                         index)});
        } else if (!isShared && HaveValueInCommon(entry, typed)) {
            isShared = true;
            notes.push_back({"shared-number", "", 0,
                             fmt::format("another contact of the handset has a number or an address of these: {}, at "
                                         "index {}",
                                         kind.Title(entry), index)});
        }
    }
    return notes;
}

Plan MeetContacts(const EntryKind& kind, std::vector<Candidate> cards, const Inventory& inventory, Filling filling)
{
    return ContactMeeting(kind, inventory, filling).Meet(std::move(cards));
}

} // namespace phnctl
