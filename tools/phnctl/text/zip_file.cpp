#include "phnctl/text/zip_file.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/text_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <memory>
#include <new>
#include <string>
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

using Source = std::unique_ptr<zip_source_t, decltype(&zip_source_free)>;

std::string BytesOf(zip_source_t* source)
{
    zip_stat_t size{};
    if (zip_source_stat(source, &size) != 0 || zip_source_open(source) != 0)
        throw std::bad_alloc();
    std::string bytes(size.size, '\0');
    zip_source_read(source, bytes.data(), bytes.size());
    zip_source_close(source);
    return bytes;
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
    const Source memory(zip_source_buffer_create(nullptr, 0, 0, nullptr), &zip_source_free);
    std::unique_ptr<zip_t, decltype(&zip_discard)> archive(
        memory ? zip_open_from_source(memory.get(), ZIP_TRUNCATE, nullptr) : nullptr, &zip_discard);
    if (!archive)
        throw std::bad_alloc();
    zip_source_keep(memory.get()); // the archive has it, and lets go of it when it is closed
    for (const ZipEntry& entry : entries)
        Add(archive.get(), file, entry);
    if (zip_close(archive.get()) != 0)
        Fail(file, zip_strerror(archive.get()));
    static_cast<void>(archive.release()); // closed, it is gone
    WriteText(file, BytesOf(memory.get()), Existing::Refuse);
}

} // namespace phnctl
