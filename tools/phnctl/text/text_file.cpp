#include "phnctl/text/text_file.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <fstream>
#include <iostream>
#include <string_view>
#include <system_error>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLargestFile = std::size_t{64} << 20;

std::string ReadStream(std::istream& stream, const std::string& name)
{
    std::string text;
    std::vector<char> block(std::size_t{64} << 10);
    while (stream.read(block.data(), static_cast<std::streamsize>(block.size())) || stream.gcount() > 0) {
        text.append(block.data(), static_cast<std::size_t>(stream.gcount()));
        if (text.size() > kLargestFile)
            throw Failure(kUsage, fmt::format("{} is larger than {} MiB", name, kLargestFile >> 20));
    }
    if (stream.bad())
        throw Failure(kRefused, fmt::format("{} cannot be read to its end", name));
    return text;
}

std::string WithoutMark(std::string text)
{
    const std::string_view view = text;
    if (view.starts_with("\xEF\xBB\xBF"))
        return text.substr(3);
    if (view.starts_with("\xFF\xFE"))
        return FromUtf16(view.substr(2), false);
    if (view.starts_with("\xFE\xFF"))
        return FromUtf16(view.substr(2), true);
    return text;
}

void OrRefuse(const fs::path& path, const auto& write)
{
    try {
        write();
    } catch (const std::system_error& failure) {
        throw Failure(kRefused, fmt::format("{}: {}", Printable(TextOf(path)), failure.code().message()));
    }
}

bool HasExtension(const fs::path& path, const std::vector<std::string>& extensions)
{
    std::string actual = path.extension().string();
    std::transform(actual.begin(), actual.end(), actual.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return std::ranges::find(extensions, actual) != extensions.end();
}

} // namespace

fs::path PathOf(const std::string& text)
{
    return {std::u8string(text.begin(), text.end())};
}

std::string TextOf(const fs::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::vector<std::string> FilesOf(const std::vector<std::string>& arguments, const std::vector<std::string>& extensions)
{
    std::vector<std::string> files;
    for (const std::string& argument : arguments) {
        std::error_code error;
        if (argument == "-" || !fs::is_directory(PathOf(argument), error)) {
            files.push_back(argument);
            continue;
        }
        std::vector<std::string> inside;
        for (const auto& item : fs::directory_iterator(PathOf(argument), error))
            if (HasExtension(item.path(), extensions))
                inside.push_back(TextOf(item.path()));
        if (error)
            throw Failure(kUsage, fmt::format("{}: {}", Printable(argument), error.message()));
        if (inside.empty())
            throw Failure(kUsage, fmt::format("the folder {} holds no {} file", Printable(argument),
                                              fmt::join(extensions, " or ")));
        std::sort(inside.begin(), inside.end());
        files.insert(files.end(), inside.begin(), inside.end());
    }
    return files;
}

std::string ReadText(const std::string& file)
{
    if (file == "-")
        return WithoutMark(ReadStream(std::cin, "standard input"));
    std::ifstream stream(PathOf(file), std::ios::binary);
    if (!stream)
        throw Failure(kUsage, fmt::format("{}: {}", Printable(file), std::strerror(errno)));
    return WithoutMark(ReadStream(stream, Printable(file)));
}

void WriteText(const fs::path& path, const std::string& text, Existing existing)
{
    std::error_code error;
    if (existing == Existing::Refuse && fs::exists(path, error))
        throw Failure(kUsage, fmt::format("{} exists already; --force replaces it", Printable(TextOf(path))));
    OrRefuse(path, [&] { host::WriteWhole(path, text); });
}

bool MakeFolder(const fs::path& folder)
{
    std::error_code error;
    const bool isNew = !fs::is_directory(folder, error);
    OrRefuse(folder, [&] { host::MakePrivateFolder(folder); });
    return isNew;
}

} // namespace phnctl
