#include "phnctl/plan/presents.h"

#include <algorithm>
#include <utility>

namespace phnctl {

bool AreSurelySame(const EntryForm& form, const Entry& one, const Entry& other)
{
    const std::vector<std::string> marks = form.Marks(one);
    const std::vector<std::string> others = form.Marks(other);
    return !form.CanMerge() ||
           std::find_first_of(marks.begin(), marks.end(), others.begin(), others.end()) != marks.end();
}

Presents::Presents(const EntryForm& form, const Inventory& inventory) : m_form(form)
{
    for (const StoredEntry& stored : inventory.entries) {
        const Entry entry = form.Storable(stored.entry);
        Present* const present = &m_presents.emplace_back(Present{stored.index, entry, entry});
        m_byKey.emplace(form.Key(entry), present);
        m_byOrigin.emplace(form.Origin(entry), present);
        for (const std::string& mark : form.Marks(entry))
            m_byMark.emplace(mark, present);
    }
}

std::vector<Present*> Presents::Found(const Index& index, const std::string& text)
{
    std::vector<Present*> found;
    const auto [first, last] = index.equal_range(text);
    for (auto item = first; item != last; ++item)
        found.push_back(item->second);
    return found;
}

const Present* Presents::OtherWithMarkOf(const Entry& entry, std::string& mark) const
{
    const std::string key = m_form.Key(entry);
    for (const std::string& own : m_form.Marks(entry))
        for (const Present* const present : Found(m_byMark, own))
            if (m_form.Key(present->before) != key) {
                mark = own;
                return present;
            }
    return nullptr;
}

Present* Presents::OwnedLike(const Entry& entry) const
{
    for (const std::string& text : OwnedTexts(entry))
        if (const auto found = m_owned.find(text); found != m_owned.end())
            return found->second;
    return nullptr;
}

void Presents::Own(Present& present, std::size_t owner, const Entry& entry)
{
    present.owner = owner;
    present.entry = entry;
    for (const std::string& text : OwnedTexts(entry))
        m_owned.insert_or_assign(text, &present);
}

void Presents::Add(std::size_t owner, const Entry& entry)
{
    Own(m_presents.emplace_back(), owner, entry);
}

std::vector<std::string> Presents::OwnedTexts(const Entry& entry) const
{
    std::vector<std::string> texts = m_form.Marks(entry);
    const std::string key = m_form.Key(entry);
    for (std::string& text : texts)
        text = key + '\0' + text;
    return texts;
}

} // namespace phnctl
