#include "phnctl/text/zip_file.h"

#include "phnctl/text/failure.h"

namespace phnctl {

bool CanWriteZip()
{
    return false;
}

void CheckZipCanBeMade(const std::filesystem::path&) {}

void WriteZip(const std::filesystem::path&, const std::vector<ZipEntry>&)
{
    throw Failure(kUsage, "this build writes no zip files");
}

} // namespace phnctl
