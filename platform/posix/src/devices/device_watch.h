// Watches the device directory for device interfaces that come and go, on the service thread. The directory need not be
// there: then its nearest existing ancestor is watched until it is. Used by the device notifications, which keep a
// watch only while somebody is registered.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "base/unique_descriptor.h"
#include "threads/service_thread.h"

namespace platform {

class DeviceWatch
{
public:
    // Called, with the base lock held, with the name of an interface that has arrived (true) or is gone (false). When
    // it throws, it is called again.
    using Listener = std::function<void(const Lock&, const std::string& name, bool arrived)>;

    // What is there now is not announced. Throws std::system_error or Win32Error when nothing can be watched.
    DeviceWatch(const Lock& lock, std::string directory, Listener listener);

    // Call it before the object goes.
    void End(const Lock& lock);

private:
    // Names of the interfaces present, with the numbers of their links: a link that was replaced has another one.
    using Interfaces = std::map<std::string, std::uint64_t>;

    void OnEvents(const Lock& lock);
    bool OnName(const Lock& lock, std::uint32_t events, const std::string& name);
    void Rescan(const Lock& lock);
    void WatchNearest();
    int WatchAncestor() const;
    void ReplaceWatch(int& watch, int replacement) const;
    void Arrive(const Lock& lock, const std::string& name, std::uint64_t link);
    void Leave(const Lock& lock, const std::string& name);
    Interfaces Present() const;

    const std::string directory_;
    const Listener listener_;
    UniqueDescriptor inotify_;
    int directoryWatch_ = -1;
    int ancestorWatch_ = -1;
    Interfaces present_;    // as the listener was told
    bool isBehind_ = false; // not all events were told
    WatchId watch_ = 0;
};

} // namespace platform
