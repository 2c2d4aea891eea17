// A folder of a test's own, empty at first and gone with the object.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <system_error>

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        const auto numbered = [](unsigned number) {
            return std::filesystem::temp_directory_path() /
                   ("phnnrv-test-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(number));
        };
        for (unsigned number = 0; !std::filesystem::create_directory(path_ = numbered(number)); ++number) {
        }
    }
    ~TemporaryFolder()
    {
        std::error_code ignored; // a folder that stays behind is no failure of the test
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};
