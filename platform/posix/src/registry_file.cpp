#include "registry_file.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "unique_descriptor.h"

namespace platform {
namespace {

constexpr off_t kMaxSize = 1 << 20;

std::string ReadWhole(const char* path)
{
    const UniqueDescriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status
    {
    };
    if (!file || fstat(file.Get(), &status) || !S_ISREG(status.st_mode) || status.st_size > kMaxSize)
        return {};
    std::string text(static_cast<size_t>(status.st_size), '\0');
    size_t length = 0;
    while (length < text.size()) {
        const ssize_t count = read(file.Get(), text.data() + length, text.size() - length);
        if (count <= 0)
            break;
        length += static_cast<size_t>(count);
    }
    text.resize(length);
    return text;
}

// Tells whether a file may have changed. The file itself is watched for its content, its directory for its name.
class FileWatch
{
public:
    // Starts watching this file: what happens after the call is noticed.
    void Start(const std::string& path)
    {
        const size_t slash = path.rfind('/');
        name_ = path.substr(slash + 1);
        const std::string directory = slash == path.npos ? "." : path.substr(0, slash + 1);
        if (!inotify_)
            inotify_ = UniqueDescriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
        Replace(directoryWatch_, directory.c_str(), kNameEvents | IN_ONLYDIR);
        Replace(fileWatch_, path.c_str(), kContentEvents);
    }

    bool MayHaveChanged() const
    {
        if (directoryWatch_ < 0)
            return true;
        bool changed = false;
        alignas(inotify_event) char buffer[4096];
        for (;;) {
            const ssize_t count = read(inotify_.Get(), buffer, sizeof buffer);
            if (count <= 0)
                return changed;
            for (const char* at = buffer; at < buffer + count;) {
                inotify_event event{};
                std::memcpy(&event, at, sizeof event);
                changed = changed || Concerns(event, at + sizeof event);
                at += sizeof event + event.len;
            }
        }
    }

private:
    static constexpr std::uint32_t kSelfEvents = IN_DELETE_SELF | IN_MOVE_SELF;
    static constexpr std::uint32_t kContentEvents = IN_MODIFY | IN_ATTRIB | kSelfEvents;
    static constexpr std::uint32_t kNameEvents = IN_CREATE | IN_DELETE | IN_MOVED_TO | IN_MOVED_FROM | kSelfEvents;

    bool Concerns(const inotify_event& event, const char* name) const
    {
        if (event.mask & IN_Q_OVERFLOW)
            return true;
        if (event.wd == directoryWatch_)
            return event.len == 0 || name_ == name;
        return event.wd == fileWatch_;
    }

    void Replace(int& watch, const char* path, std::uint32_t events) const
    {
        const int replaced = std::exchange(watch, inotify_add_watch(inotify_.Get(), path, events));
        if (replaced >= 0 && replaced != watch)
            inotify_rm_watch(inotify_.Get(), replaced);
    }

    UniqueDescriptor inotify_;
    std::string name_;
    int directoryWatch_ = -1;
    int fileWatch_ = -1;
};

class RegistryFile
{
public:
    // False if `known` is the file as it is now; otherwise that is put there.
    bool Renew(std::shared_ptr<const RegistryTree>& known)
    {
        const std::lock_guard guard(mutex_);
        Look();
        if (known == tree_)
            return false;
        known = tree_;
        return true;
    }

private:
    // A caller that asks again and again, as the log does, is spared the system's answer that nothing has changed.
    static constexpr std::chrono::microseconds kLookIsGoodFor{10};

    void Look()
    {
        const auto now = std::chrono::steady_clock::now();
        if (tree_ && now - looked_ < kLookIsGoodFor)
            return;
        looked_ = now;
        const char* const named = std::getenv("PHNNRV_REGISTRY");
        const char* const path = named ? named : "/etc/phnnrv.reg";
        if (tree_ && path_ == path && !watch_.MayHaveChanged())
            return;
        tree_ = nullptr;
        path_ = path;
        watch_.Start(path_);
        tree_ = std::make_shared<RegistryTree>(ParseRegistry(ReadWhole(path)));
    }

    std::mutex mutex_; // a leaf
    std::chrono::steady_clock::time_point looked_{};
    std::string path_;
    FileWatch watch_;
    std::shared_ptr<const RegistryTree> tree_;
};

} // namespace

bool RenewRegistry(std::shared_ptr<const RegistryTree>& known)
{
    static RegistryFile& file = *new RegistryFile;
    return file.Renew(known);
}

} // namespace platform
