#include "phnctl/plan/counts.h"

namespace phnctl {

bool Counts::Add(const Candidate& candidate)
{
    if (!candidate.isMeant)
        return true;
    if (!candidate.entry.fields.empty() && !m_seen.insert(candidate.entry.Text()).second)
        return false;
    const std::string key = m_form.Key(candidate.entry);
    bool isAnother = true;
    for (const std::string& mark : m_form.Marks(candidate.entry))
        isAnother = m_marks.emplace(key, mark).second && isAnother;
    m_things[key] += isAnother;
    ++m_origins[candidate.origin];
    return true;
}

} // namespace phnctl
