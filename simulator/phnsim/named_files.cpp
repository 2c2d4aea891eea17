#include "simulator/phnsim/named_files.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace simulator {
namespace {

namespace fs = std::filesystem;

// Terminals, pipes and the null device may be named twice.
bool IsOneFile(const fs::path& first, const fs::path& second)
{
    std::error_code error;
    if (fs::exists(first, error) && fs::exists(second, error))
        return fs::is_regular_file(first, error) && fs::equivalent(first, second, error);
    return fs::weakly_canonical(fs::absolute(first), error) == fs::weakly_canonical(fs::absolute(second), error);
}

std::vector<std::pair<std::string, std::string>> NamedFiles(const Options& options)
{
    std::vector<std::pair<std::string, std::string>> files{{"--data", options.data},     {"--script", options.script},
                                                           {"--replay", options.replay}, {"--record", options.record},
                                                           {"--pcap", options.pcap},     {"--log", options.log}};
    for (const std::string& file : options.toPcap)
        files.emplace_back("--to-pcap", file);
    for (const std::string& file : options.mask)
        files.emplace_back("--mask", file);
    std::erase_if(files, [](const auto& file) { return file.second.empty(); });
    return files;
}

} // namespace

void CheckFilesDiffer(const Options& options)
{
    const auto files = NamedFiles(options);
    for (auto second = files.begin(); second != files.end(); ++second)
        for (auto first = files.begin(); first != second; ++first)
            if (IsOneFile(first->second, second->second))
                throw std::invalid_argument(first->first + " " + first->second + " and " + second->first + " " +
                                            second->second + " are one file");
}

} // namespace simulator
