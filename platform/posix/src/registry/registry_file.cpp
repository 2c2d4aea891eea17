#include "registry/registry_file.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>

#include "base/unique_descriptor.h"
#include "phn_platform_module.h"
#include "registry/registry_text.h"

namespace platform {
namespace {

constexpr off_t kMaxSize = 1 << 20;

constinit std::atomic<bool> arePromptReadsAskedFor{false};

// /dev/null is no file either.
bool IsThere(const std::string& path)
{
    struct stat status
    {
    };
    return stat(path.c_str(), &status) == 0 ? !S_ISCHR(status.st_mode) : errno != ENOENT && errno != ENOTDIR;
}

// Nothing if the file cannot be read, or is none of the sort that a registry may be.
std::optional<std::string> ReadWhole(const std::string& path)
{
    const UniqueDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status
    {
    };
    if (!file || fstat(file.Get(), &status) || !S_ISREG(status.st_mode) || status.st_size > kMaxSize)
        return std::nullopt;
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

void AddFile(const std::string& path, Registry& registry)
{
    if (!IsThere(path))
        return;
    auto bytes = ReadWhole(path);
    if (!bytes)
        registry.missing = ERROR_CANTREAD;
    else if (!AddRegistry(AnsiText(std::move(*bytes)), registry.keys))
        registry.missing = ERROR_BADDB;
}

std::vector<std::string> PartedByColons(std::string_view list)
{
    std::vector<std::string> parts;
    while (!list.empty()) {
        const size_t end = std::min(list.find(':'), list.size());
        parts.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return parts;
}

// The variables of the environment that the registry is made from. Asking whether they are as they were takes no
// memory and no search: the log asks at each of its lines. A variable that is set anew is another entry.
class Environment
{
public:
    bool IsAsKnown() const
    {
        return wasAsked_ == arePromptReadsAskedFor &&
               std::ranges::all_of(entries_, [at = Entries()](const char* entry) mutable { return *at++ == entry; });
    }

    void Renew()
    {
        entries_.clear();
        for (const char* const* at = Entries(); entries_.empty() || entries_.back(); ++at)
            entries_.push_back(*at);
        wasAsked_ = arePromptReadsAskedFor;
        std::ranges::transform(kVariables, texts_.begin(), TextOf);
    }

    std::string_view Files() const { return texts_[0]; }

    // Values of the library's key that variables state, over what the files say: as a file's text.
    std::string Values() const
    {
        std::string values;
        for (size_t i = 1; i < kVariables.size(); i++) {
            if (!texts_[i].empty())
                values.append("\"").append(kVariables[i].value).append("\"=dword:").append(texts_[i]).append("\n");
        }
        return values.empty() ? values : "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n" + values;
    }

private:
    static const char* const* Entries()
    {
        static constexpr const char* kNone = nullptr;
        return environ ? environ : &kNone;
    }

    struct Variable
    {
        const char* name;
        const char* otherwise;
        const char* value;
        const std::atomic<bool>* isAskedFor; // stands for "1"; none: null
    };
    static const char* TextOf(const Variable& variable)
    {
        if (const char* const text = std::getenv(variable.name))
            return text;
        return variable.isAskedFor && *variable.isAskedFor ? "1" : variable.otherwise;
    }

    static constexpr std::array<Variable, 3> kVariables{
        {{"PHNNRV_REGISTRY", "/etc/phnnrv.reg", nullptr, nullptr},
         {"PHNNRV_CHECK_HOST", "", "Check Host", nullptr},
         {"PHNNRV_PROMPT_READS", "", "Prompt Reads", &arePromptReadsAskedFor}}};

    std::vector<const char*> entries_; // as in environ, with the null behind the last
    bool wasAsked_ = false;
    std::array<std::string, kVariables.size()> texts_;
};

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

class RegistryFiles
{
public:
    // False if `known` is what the files hold now; otherwise that is put there.
    bool Renew(std::shared_ptr<const Registry>& known)
    {
        const std::lock_guard guard(mutex_);
        Look();
        if (known == registry_)
            return false;
        known = registry_;
        return true;
    }

private:
    // A caller that asks again and again, as the log does, is spared the system's answer that nothing has changed.
    static constexpr std::chrono::microseconds kLookIsGoodFor{10};

    void Look()
    {
        const auto now = std::chrono::steady_clock::now();
        if (registry_ && now - looked_ < kLookIsGoodFor)
            return;
        looked_ = now;
        if (registry_ && environment_.IsAsKnown() && std::ranges::none_of(watches_, &FileWatch::MayHaveChanged))
            return;
        registry_ = nullptr;
        environment_.Renew();
        Read();
    }

    void Read()
    {
        const auto paths = PartedByColons(environment_.Files());
        auto registry = std::make_shared<Registry>();
        registry->keys[""];
        watches_.resize(paths.size());
        for (size_t i = 0; i < paths.size(); i++) {
            watches_[i].Start(paths[i]);
            AddFile(paths[i], *registry);
        }
        if (const std::string values = environment_.Values(); !values.empty())
            (void)AddRegistry(values, registry->keys);
        registry_ = std::move(registry);
    }

    std::mutex mutex_; // a leaf
    std::chrono::steady_clock::time_point looked_{};
    Environment environment_;
    std::vector<FileWatch> watches_;
    std::shared_ptr<const Registry> registry_;
};

} // namespace

bool RenewRegistry(std::shared_ptr<const Registry>& known)
{
    static RegistryFiles& files = *new RegistryFiles;
    return files.Renew(known);
}

} // namespace platform

void PhnAskForPromptReads()
{
    platform::arePromptReadsAskedFor = true;
}
