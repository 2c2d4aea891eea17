#include "log_search.h"

#include <fcntl.h>

#include <algorithm>
#include <fstream>

#include "simulator/lines/descriptor.h"

namespace soak {

namespace fs = std::filesystem;

constexpr std::size_t kMostFindings = 20;

LogSearch::LogSearch(fs::path folder, std::vector<std::string> secrets)
    : folder_(std::move(folder)), secrets_(std::move(secrets))
{
}

void LogSearch::Search()
{
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_))
        if (entry.path().extension() == ".log")
            SearchFile(entry.path());
}

void LogSearch::SearchFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    file.seekg(searched_);
    for (std::string line; std::getline(file, line) && !file.eof();) { // the rest of one that is not whole yet, later
        ++lines_;
        searched_ += static_cast<off_t>(line.size() + 1);
        const bool tells =
            std::ranges::any_of(secrets_, [&](const auto& secret) { return line.find(secret) != line.npos; });
        if (tells && findings_.size() < kMostFindings)
            findings_.insert(line);
    }
    const simulator::Descriptor same(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (searched_ > 0) // it may fail: then the file goes on growing
        fallocate(same.Get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0, searched_);
}

} // namespace soak
