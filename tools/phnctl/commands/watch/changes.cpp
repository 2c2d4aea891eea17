#include "phnctl/commands/watch/changes.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace phnctl {

namespace {

std::atomic<Changes*> current = nullptr;

} // namespace

Changes::Changes()
{
    current = this;
}

Changes::~Changes()
{
    current = nullptr;
}

void PHN_CALL Changes::Note(std::uint32_t callbackType)
{
    Changes* const changes = current;
    if (!changes)
        return;
    const std::lock_guard lock(changes->m_mutex);
    if (std::find(changes->m_types.begin(), changes->m_types.end(), callbackType) == changes->m_types.end())
        changes->m_types.push_back(callbackType);
    changes->m_changed.notify_all();
}

std::vector<std::uint32_t> Changes::Await(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, limit, [this] { return m_stopped || !m_types.empty(); });
    return m_stopped ? std::vector<std::uint32_t>() : std::exchange(m_types, {});
}

void Changes::Clear()
{
    const std::lock_guard lock(m_mutex);
    m_types.clear();
}

void Changes::Stop()
{
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
    m_changed.notify_all();
}

bool Changes::IsStopped() const
{
    const std::lock_guard lock(m_mutex);
    return m_stopped;
}

} // namespace phnctl
