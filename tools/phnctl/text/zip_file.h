// Writes a zip file. zip_file_none.cpp takes the place of zip_file.cpp where there is no libzip.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace phnctl {

struct ZipEntry
{
    std::string name;
    std::string text;
};

bool CanWriteZip();

// Throws Failure: kUsage when the file exists.
void CheckZipCanBeMade(const std::filesystem::path& file);
void WriteZip(const std::filesystem::path& file, const std::vector<ZipEntry>& entries);

} // namespace phnctl
