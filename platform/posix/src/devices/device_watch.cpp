#include "devices/device_watch.h"

#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <cstring>

#include "base/win32_error.h"
#include "devices/device_directory.h"

namespace platform {
namespace {

constexpr std::uint32_t kComing = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t kGoing = IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t kSelf = IN_DELETE_SELF | IN_MOVE_SELF;

// The number of the link of this name; 0 if it is none or not there.
std::uint64_t LinkNumber(const std::string& directory, const std::string& name)
{
    struct stat status
    {
    };
    const bool isLink = lstat((directory + '/' + name).c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    return isLink ? status.st_ino : 0;
}

} // namespace

DeviceWatch::DeviceWatch(const Lock& lock, std::string directory, Listener listener)
    : directory_(std::move(directory)),
      listener_(std::move(listener)),
      inotify_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    if (!inotify_)
        ThrowErrno();
    WatchNearest();
    present_ = Present();
    watch_ =
        WatchDescriptor(lock, inotify_.Get(), EPOLLIN, [this](const Lock& held, std::uint32_t) { OnEvents(held); });
}

void DeviceWatch::End(const Lock& lock)
{
    EndWatch(lock, watch_);
}

void DeviceWatch::OnEvents(const Lock& lock)
{
    bool understood = !std::exchange(isBehind_, true);
    alignas(inotify_event) char buffer[4096];
    for (;;) {
        const ssize_t count = read(inotify_.Get(), buffer, sizeof buffer);
        if (count <= 0)
            break;
        for (const char* at = buffer; at < buffer + count;) {
            inotify_event event{};
            std::memcpy(&event, at, sizeof event);
            const bool named = event.wd == directoryWatch_ && event.len > 0;
            understood = named && OnName(lock, event.mask, at + sizeof event) && understood;
            at += sizeof event + event.len;
        }
    }
    if (!understood)
        Rescan(lock);
    isBehind_ = false;
}

// A link of the directory came or went. False for anything else.
bool DeviceWatch::OnName(const Lock& lock, std::uint32_t events, const std::string& name)
{
    if (!(events & (kComing | kGoing)))
        return false;
    if (events & kGoing)
        Leave(lock, name);
    else if (const std::uint64_t link = LinkNumber(directory_, name); link != 0 && InterfaceClassOf(name))
        Arrive(lock, name, link);
    return true;
}

// After the directory itself came or went, or events were lost, for want of memory too: compares what is there with
// what was known.
void DeviceWatch::Rescan(const Lock& lock)
{
    WatchNearest();
    const Interfaces now = Present();
    const Interfaces before = present_;
    for (const auto& [name, link] : before) {
        if (!now.contains(name))
            Leave(lock, name);
    }
    for (const auto& [name, link] : now)
        Arrive(lock, name, link);
}

void DeviceWatch::WatchNearest()
{
    for (;;) {
        ReplaceWatch(directoryWatch_,
                     inotify_add_watch(inotify_.Get(), directory_.c_str(), kComing | kGoing | kSelf | IN_ONLYDIR));
        const int ancestor = directoryWatch_ < 0 ? WatchAncestor() : -1;
        if (ancestor == ancestorWatch_)
            return;
        ReplaceWatch(ancestorWatch_, ancestor); // and look again: the directory may have been made meanwhile
    }
}

// A watch of the nearest ancestor that is there; -1 if there is none.
int DeviceWatch::WatchAncestor() const
{
    std::string path = directory_;
    for (;;) {
        const size_t slash = path.rfind('/');
        if (slash == path.npos || path == "/")
            return -1;
        path.resize(slash ? slash : 1);
        const int watch = inotify_add_watch(inotify_.Get(), path.c_str(), kComing | kSelf | IN_ONLYDIR);
        if (watch >= 0)
            return watch;
    }
}

void DeviceWatch::ReplaceWatch(int& watch, int replacement) const
{
    const int replaced = std::exchange(watch, replacement);
    if (replaced >= 0 && replaced != replacement)
        inotify_rm_watch(inotify_.Get(), replaced);
}

// A link in place of another one is another device: the first is gone.
void DeviceWatch::Arrive(const Lock& lock, const std::string& name, std::uint64_t link)
{
    const auto known = present_.find(name);
    if (known != present_.end() && known->second == link)
        return;
    Leave(lock, name);
    listener_(lock, name, true);
    present_[name] = link;
}

void DeviceWatch::Leave(const Lock& lock, const std::string& name)
{
    if (!present_.contains(name))
        return;
    listener_(lock, name, false);
    present_.erase(name);
}

DeviceWatch::Interfaces DeviceWatch::Present() const
{
    Interfaces present;
    for (const std::string& name : DeviceNames(directory_)) {
        const std::uint64_t link = LinkNumber(directory_, name);
        if (link != 0 && InterfaceClassOf(name))
            present[name] = link;
    }
    return present;
}

} // namespace platform
