#include "report.h"

#include "log/log.h"

#include <cstdio>
#include <span>

namespace simulated {
namespace {

constexpr CLogSource Log{LOG_PHNNRV};

} // namespace

void Report::OpenFile(const std::filesystem::path& file)
{
    const std::scoped_lock lock(mutex_);
    file_.open(file);
}

void Report::SetClient(simulator::Line* client)
{
    const std::scoped_lock lock(mutex_);
    client_ = client;
}

void Report::Print(std::string_view line)
{
    const std::string text = std::string(line) + "\n";
    const std::scoped_lock lock(mutex_);
    if (file_.is_open())
        file_ << text << std::flush;
    if (client_)
        client_->Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void Report::TellWrong(const std::string& sentence)
{
    Print(sentence);
    Log.Error("Simulated handset - %s", sentence.c_str());
    std::fprintf(stderr, "PHNNRV: %s\n", sentence.c_str());
}

} // namespace simulated
