#include "phnctl/contact_merge.h"

#include "phnctl/contact_fields.h"
#include "phnctl/number.h"

#include <algorithm>
#include <iterator>

namespace phnctl {

using namespace contact_property;

namespace {

bool IsAddress(const EntryField& field)
{
    return field.property == kEmail || field.property == kEmail2;
}

bool IsValue(const EntryField& field)
{
    return IsAddress(field) || std::find(std::begin(kNumberProperties), std::end(kNumberProperties), field.property) !=
                                   std::end(kNumberProperties);
}

// The field with that number or address, in whatever place.
template <class Fields>
auto FindValue(Fields& fields, const EntryField& value)
{
    return std::find_if(fields.begin(), fields.end(), [&](const EntryField& field) {
        return IsValue(field) && IsAddress(field) == IsAddress(value) && field.value == value.value;
    });
}

template <class Fields>
auto FindPlace(Fields& fields, const std::string& property)
{
    return std::find_if(fields.begin(), fields.end(),
                        [&](const EntryField& field) { return field.property == property; });
}

class Merger
{
public:
    Merger(const Entry& wanted, const Entry& present) : m_wanted(wanted), m_present(present)
    {
        std::copy_if(present.fields.begin(), present.fields.end(), std::back_inserter(m_fields),
                     [](const EntryField& field) { return field.property == kName || IsValue(field); });
    }

    Merged Merge()
    {
        for (const EntryField& field : m_wanted.fields)
            if (field.property == kName)
                Put(field);
            else if (IsValue(field))
                PlaceValue(field);
        Merged merged;
        std::copy_if(m_fields.begin(), m_fields.end(), std::back_inserter(merged.kept), [&](const EntryField& field) {
            return IsValue(field) && FindValue(m_wanted.fields, field) == m_wanted.fields.end();
        });
        for (const EntryField& field : m_wanted.fields)
            if (field.property == kDefault)
                m_fields.push_back({kDefault, DefaultOf(field.value)});
            else if (field.property != kName && !IsValue(field))
                m_fields.push_back(field);
        merged.entry = CompleteContact({std::move(m_fields)}, &m_present);
        return merged;
    }

private:
    void Put(const EntryField& field)
    {
        const auto occupant = FindPlace(m_fields, field.property);
        if (occupant == m_fields.end())
            m_fields.push_back({field.property, field.value});
        else
            occupant->value = field.value;
    }

    void PlaceValue(const EntryField& field)
    {
        const auto occupant = FindPlace(m_fields, field.property);
        if (occupant != m_fields.end() && occupant->value == field.value)
            return;
        if (const auto same = FindValue(m_fields, field); same != m_fields.end()) {
            const bool wouldCostOne =
                occupant != m_fields.end() && FindValue(m_wanted.fields, *occupant) == m_wanted.fields.end();
            if (field.hasAnyPlace || wouldCostOne)
                return;
            m_fields.erase(same);
        } else if (field.hasAnyPlace && occupant != m_fields.end()) {
            return Put({FreePlace(field.property), field.value});
        }
        Put(field);
    }

    // Otherwise the one given.
    std::string FreePlace(const std::string& otherwise) const
    {
        const auto* free =
            std::find_if(std::begin(kAnyNumberPlaces), std::end(kAnyNumberPlaces),
                         [&](const char* place) { return FindPlace(m_fields, place) == m_fields.end(); });
        return free == std::end(kAnyNumberPlaces) ? otherwise : *free;
    }

    // The default number stays the number that it was, wherever that is now.
    std::string DefaultOf(const std::string& position) const
    {
        const auto number = ParseNumber(position, std::size(kNumberProperties));
        if (!number || *number == 0)
            return position;
        const auto wanted = FindPlace(m_wanted.fields, kNumberProperties[*number - 1]);
        if (wanted == m_wanted.fields.end())
            return position;
        const auto placed = FindValue(m_fields, *wanted);
        const auto* place = std::find(std::begin(kNumberProperties), std::end(kNumberProperties), placed->property);
        return std::to_string(place - std::begin(kNumberProperties) + 1);
    }

    const Entry& m_wanted;
    const Entry& m_present;
    std::vector<EntryField> m_fields;
};

} // namespace

Merged MergeContacts(const Entry& wanted, const Entry& present)
{
    return Merger(wanted, present).Merge();
}

std::size_t CountValues(const Entry& entry)
{
    return static_cast<std::size_t>(std::count_if(entry.fields.begin(), entry.fields.end(), IsValue));
}

bool ShareValue(const Entry& one, const Entry& other)
{
    return std::any_of(one.fields.begin(), one.fields.end(), [&](const EntryField& field) {
        return IsValue(field) && FindValue(other.fields, field) != other.fields.end();
    });
}

} // namespace phnctl
