#include "phnctl/contacts/merge.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/placing.h"

namespace phnctl {

using namespace contact_property;

Merged MergeContacts(const Candidate& card, const Entry& present)
{
    const std::vector<EntryField> values = ValuesOf(card.entry);
    std::vector<EntryField> wanted = values;
    for (EntryField& field : wanted)
        if (card.about.Find(field.property))
            field.property = kAnyNumber;
    const Placement placement = Place(wanted, ValuesOf(present));

    Merged merged;
    merged.kept = placement.kept;
    for (std::size_t at = 0; at < values.size(); ++at) {
        const auto& [place, isNew] = placement.placed[at];
        if (place.empty())
            merged.leftOut.push_back(values[at]);
        else if (isNew && wanted[at].property != kAnyNumber && wanted[at].property != place)
            merged.displaced.push_back({values[at], place});
    }
    const std::string* const own = present.Find(kName);
    if (const std::string* const name = own ? own : card.entry.Find(kName))
        merged.entry.fields.push_back({kName, *name});
    merged.entry.fields.insert(merged.entry.fields.end(), placement.values.begin(), placement.values.end());
    merged.entry = WithSettings(std::move(merged.entry), card.entry, &present);
    return merged;
}

} // namespace phnctl
