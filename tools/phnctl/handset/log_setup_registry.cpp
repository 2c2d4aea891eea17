#include "phnctl/handset/log_setup.h"

#include "phnctl/cli/ending.h"
#include "phnctl/handset/linux_findings.h"
#include "phnctl/text/failure.h"
#include "system/system.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

fs::path NewFolder()
{
    std::string pattern = (fs::temp_directory_path() / "phnctl-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw Failure(kRefused, fmt::format("no folder for the log's settings can be made at {}", pattern));
    return pattern;
}

class PrivateRegistry : public LogSetup
{
public:
    explicit PrivateRegistry(std::uint32_t level) : m_folder(NewFolder()), m_start(fs::file_time_type::clock::now())
    {
        RemoveAtEnd(m_folder);
        const fs::path path = m_folder / "registry.reg";
        std::ofstream file(path, std::ios::binary);
        file << fmt::format("REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                            "\"Logging Level\"=dword:{:08x}\n",
                            level);
        if (!file.flush())
            throw Failure(kRefused, fmt::format("{} cannot be written", path.string()));
        setenv("PHNNRV_REGISTRY", (UsersRegistry() + ":" + path.string()).c_str(), 1); // the later file holds
    }
    ~PrivateRegistry() override
    {
        std::error_code error;
        fs::remove_all(m_folder, error);
        Forget(m_folder);
    }

    // Its name is the library's followed by the time of opening, so the newest one of this run is meant.
    std::string LogFile(const std::string& libraryPath) const override
    {
        const fs::path library = fs::absolute(libraryPath).lexically_normal();
        fs::directory_entry newest;
        for (const fs::path& folder : {library.parent_path(), host::StateDirectory()})
            FindNewest(folder, library.filename().string(), newest);
        return newest.path().string();
    }

private:
    void FindNewest(const fs::path& folder, const std::string& beginning, fs::directory_entry& newest) const
    {
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folder, error)) {
            const std::string name = entry.path().filename().string();
            if (!name.starts_with(beginning) || !name.ends_with(".log") || entry.last_write_time() < m_start - kSlack)
                continue;
            if (newest.path().empty() || entry.last_write_time() > newest.last_write_time())
                newest = entry;
        }
    }

    // The clock of the file system runs in ticks of some milliseconds.
    static constexpr std::chrono::milliseconds kSlack{50};

    fs::path m_folder;
    fs::file_time_type m_start;
};

} // namespace

std::unique_ptr<LogSetup> SetUpLog(std::uint32_t level)
{
    return std::make_unique<PrivateRegistry>(level);
}

} // namespace phnctl
