// What a handle from CreateFileA names: an ordinary file or a serial port. An operation throws its error; one that goes
// on after the call returned (overlapped) gives ERROR_IO_PENDING, one that is over ERROR_SUCCESS.
#pragma once

#include "threads/handle_table.h"

namespace platform {

class File : public Object
{
public:
    File* AsFile() final { return this; }
    virtual DWORD Read(void* buffer, DWORD size, DWORD* done, OVERLAPPED* overlapped) = 0;
    virtual DWORD Write(const void* data, DWORD size, DWORD* done, OVERLAPPED* overlapped) = 0;
};

// The object for CreateFileA's arguments; throws.
std::shared_ptr<File> OpenFile(const char* name, DWORD access, DWORD disposition, DWORD flags);

} // namespace platform
