// The handset's entries while a plan is made: what they are, what the plan makes of them, and what it adds to them.
// Used by the making of plans alone.
#pragma once

#include "phnctl/plan/entry_form.h"
#include "phnctl/plan/inventory.h"

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

// True when two entries of one key are the same thing beyond doubt.
bool AreSurelySame(const EntryForm& form, const Entry& one, const Entry& other);

struct Present
{
    std::optional<std::uint32_t> index; // none: a planned entry adds it
    Entry before;                       // in the form in which entries are compared
    Entry entry;                        // and as the plan leaves it
    std::optional<std::size_t> owner{}; // the planned entry that stands for it
};

class Presents
{
public:
    // The form must live longer.
    Presents(const EntryForm& form, const Inventory& inventory);

    // Those that the handset holds already. They stay where they are as long as this object lives.
    std::vector<Present*> WithKey(const std::string& key) const { return Found(m_byKey, key); }
    std::vector<Present*> WithOrigin(const std::string& origin) const { return Found(m_byOrigin, origin); }
    // One of another key that has a mark in common with an entry, and which; null: there is none.
    const Present* OtherWithMarkOf(const Entry& entry, std::string& mark) const;

    // The one with the key of an entry, and a mark in common, that a planned entry stands for; null: there is none.
    Present* OwnedLike(const Entry& entry) const;

    // A planned entry stands for it from now on, or for a new one.
    void Own(Present& present, std::size_t owner, const Entry& entry);
    void Add(std::size_t owner, const Entry& entry);

private:
    using Index = std::multimap<std::string, Present*>;

    static std::vector<Present*> Found(const Index& index, const std::string& text);
    std::vector<std::string> OwnedTexts(const Entry& entry) const;

    const EntryForm& m_form;
    std::deque<Present> m_presents;
    Index m_byKey;
    Index m_byOrigin;
    Index m_byMark;
    std::map<std::string, Present*> m_owned; // by key and mark; the last one, so that a file of namesakes is no work
};

} // namespace phnctl
