#include "phnctl/text/zip_file.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/text_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <memory>
#include <zip.h>

namespace phnctl {

namespace {

[[noreturn]] void Fail(const std::filesystem::path& file, const std::string& why)
{
    throw Failure(kRefused, fmt::format("{} cannot be written: {}", TextOf(file), why));
}

[[noreturn]] void FailAsItExists(const std::filesystem::path& file)
{
    throw Failure(kUsage, fmt::format("{} exists; choose another name", TextOf(file)));
}

// The texts have to outlive the archive, which reads them when it is closed.
void Add(zip_t* archive, const std::filesystem::path& file, const ZipEntry& entry)
{
    zip_source_t* const source = zip_source_buffer(archive, entry.text.data(), entry.text.size(), 0);
    if (source && zip_file_add(archive, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8) >= 0)
        return;
    zip_source_free(source);
    Fail(file, zip_strerror(archive));
}

} // namespace

bool CanWriteZip()
{
    return true;
}

// By making it for a moment, as nothing else tells of every reason.
void CheckZipCanBeMade(const std::filesystem::path& file)
{
    std::FILE* const made = std::fopen(file.c_str(), "wx");
    if (!made && errno == EEXIST)
        FailAsItExists(file);
    if (!made)
        Fail(file, std::strerror(errno));
    std::fclose(made);
    std::filesystem::remove(file);
}

void WriteZip(const std::filesystem::path& file, const std::vector<ZipEntry>& entries)
{
    int error = 0;
    std::unique_ptr<zip_t, decltype(&zip_discard)> archive(zip_open(file.c_str(), ZIP_CREATE | ZIP_EXCL, &error),
                                                           &zip_discard);
    if (!archive && error == ZIP_ER_EXISTS)
        FailAsItExists(file);
    if (!archive) {
        zip_error_t reason;
        zip_error_init_with_code(&reason, error);
        const std::string why = zip_error_strerror(&reason);
        zip_error_fini(&reason);
        Fail(file, why);
    }
    for (const ZipEntry& entry : entries)
        Add(archive.get(), file, entry);
    if (zip_close(archive.get()) != 0)
        Fail(file, zip_strerror(archive.get()));
    static_cast<void>(archive.release()); // closed, it is gone
}

} // namespace phnctl
