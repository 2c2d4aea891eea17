#include "phnctl/plan/entry.h"

#include <algorithm>

namespace phnctl {

const std::string* Entry::Find(std::string_view property) const
{
    const auto field = std::find_if(fields.begin(), fields.end(),
                                    [&](const EntryField& candidate) { return candidate.property == property; });
    return field == fields.end() ? nullptr : &field->value;
}

std::string Entry::Text() const
{
    std::string text;
    for (const EntryField& field : fields)
        text.append(field.property).append(1, '\0').append(field.value).append(1, '\0');
    return text;
}

std::vector<Difference> Differences(const Entry& before, const Entry& after)
{
    std::vector<EntryField> left = before.fields;
    std::vector<Difference> differences;
    for (const EntryField& field : after.fields) {
        // The same field if there is one, otherwise one of the same name.
        auto match = std::find(left.begin(), left.end(), field);
        if (match == left.end())
            match = std::find_if(left.begin(), left.end(),
                                 [&](const EntryField& other) { return other.property == field.property; });
        if (match == left.end()) {
            differences.push_back({field.property, "", field.value});
            continue;
        }
        if (match->value != field.value)
            differences.push_back({field.property, match->value, field.value});
        left.erase(match);
    }
    for (const EntryField& field : left)
        differences.push_back({field.property, field.value, ""});
    return differences;
}

} // namespace phnctl
