#include "report.h"

#include "log/log.h"

#include <windows.h>

#include <cstdio>

namespace simulated {
namespace {

constexpr CLogSource Log{LOG_PHNNRV};

} // namespace

void Report::Open(const std::filesystem::path& file)
{
    const std::scoped_lock lock(mutex_);
    file_.Reset(CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                            nullptr));
    if (file_.Get() == INVALID_HANDLE_VALUE)
        simulator::ThrowLastError(file.filename().string() + " cannot be written");
}

void Report::Print(std::string_view line)
{
    const std::string text = std::string(line) + "\r\n";
    const std::scoped_lock lock(mutex_);
    if (!file_.Get())
        return;
    DWORD size = 0;
    if (!WriteFile(file_.Get(), text.data(), static_cast<DWORD>(text.size()), &size, nullptr) || size != text.size())
        isWhole_ = false;
}

bool Report::IsWhole()
{
    const std::scoped_lock lock(mutex_);
    return isWhole_;
}

void TellWrong(const std::string& sentence)
{
    Log.Error("Simulated handset - %s", sentence.c_str());
    std::fprintf(stderr, "PHNNRV: %s\n", sentence.c_str());
}

} // namespace simulated
