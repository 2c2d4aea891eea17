#include "simulator/phnsim/standard_input.h"

#include <windows.h>

namespace simulator {

bool StandardInputIsReadable()
{
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD size = 0;
    switch (GetFileType(input)) {
    case FILE_TYPE_DISK:
        return true;
    case FILE_TYPE_PIPE: // one whose writer has gone fails
        return !PeekNamedPipe(input, nullptr, 0, nullptr, &size, nullptr) || size != 0;
    default:
        return false;
    }
}

} // namespace simulator
