#include "log/log_reader.h"

#include <algorithm>

#include "support/files.h"

namespace fs = std::filesystem;

Lines LogReader::Files() const
{
    Lines names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
        if (entry.path().extension() == ".log")
            names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

std::string LogReader::Text() const
{
    std::string text;
    for (const std::string& name : Files())
        text += ReadAll(folder_ / name);
    return text;
}

Lines LogReader::Take()
{
    const std::string text = Text();
    Lines lines;
    for (size_t end; (end = text.find("\r\n", taken_)) != std::string::npos; taken_ = end + 2) {
        const size_t begin = text.find('\t', taken_) + 1;
        std::string& line = lines.emplace_back(text.substr(begin, end - begin));
        for (int tab = 0; tab < 2; ++tab)
            line[line.find('\t')] = ' ';
    }
    return lines;
}
