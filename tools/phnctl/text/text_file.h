// Reads the files and folders that a person names, and writes new files so that they are whole or not there. Used by
// export, import, backup and the copies that are kept. Files come from other programs: what is not UTF-8 by its mark is
// converted, what is too large is refused.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace phnctl {

// A path of the command line, which is UTF-8, and back.
std::filesystem::path PathOf(const std::string& text);
std::string TextOf(const std::filesystem::path& path);

// The files that the arguments mean, in order: a folder stands for its files with one of the extensions, sorted by
// name;
// "-" for standard input. Throws Failure(kUsage).
std::vector<std::string> FilesOf(const std::vector<std::string>& arguments, const std::vector<std::string>& extensions);

// The text of a file, or of standard input for "-". A byte order mark is removed; UTF-16 becomes UTF-8; bytes without a
// mark stay as they are. Throws Failure(kUsage).
std::string ReadText(const std::string& file);

enum class Existing
{
    Refuse,
    Replace,
};

// Writes the whole file, readable by its owner alone, or leaves what was there. Throws Failure: kUsage when it exists
// and may not be replaced.
void WriteText(const std::filesystem::path& path, const std::string& text, Existing existing);

// Makes the folder, for its owner alone, and those above it; false when it is there already. Throws Failure(kRefused).
bool MakeFolder(const std::filesystem::path& folder);

} // namespace phnctl
