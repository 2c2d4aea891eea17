// An ordinary file, which is only written: at its position, or at its end for one opened to append.
#pragma once

#include "base/unique_descriptor.h"
#include "files/file.h"

namespace platform {

class DiskFile : public File
{
public:
    explicit DiskFile(UniqueDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

    DWORD Read(void* buffer, DWORD size, DWORD* done, OVERLAPPED* overlapped) override;
    DWORD Write(const void* data, DWORD size, DWORD* done, OVERLAPPED* overlapped) override;

private:
    const UniqueDescriptor descriptor_;
};

} // namespace platform
