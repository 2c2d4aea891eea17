#include "simulator/lines/handle_line_windows.h"

#include <windows.h>

namespace simulator {
namespace {

class ComLine : public HandleLine
{
public:
    explicit ComLine(const std::string& name)
    {
        const std::string path = R"(\\.\)" + name;
        open_.Reset(CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OVERLAPPED, nullptr));
        if (open_.Get() == INVALID_HANDLE_VALUE || !SetUp())
            ThrowLastError(name);
    }

private:
    // Raw bytes; a read waits for the first and ends once no more have come for a millisecond.
    bool SetUp()
    {
        DCB settings{};
        settings.DCBlength = sizeof settings;
        if (!GetCommState(open_.Get(), &settings))
            return false;
        settings.BaudRate = CBR_115200;
        settings.ByteSize = 8;
        settings.Parity = NOPARITY;
        settings.StopBits = ONESTOPBIT;
        settings.fBinary = TRUE;
        settings.fOutxCtsFlow = settings.fOutxDsrFlow = settings.fOutX = settings.fInX = FALSE;
        settings.fDsrSensitivity = settings.fErrorChar = settings.fNull = settings.fAbortOnError = FALSE;
        settings.fDtrControl = DTR_CONTROL_ENABLE;
        settings.fRtsControl = RTS_CONTROL_ENABLE;
        COMMTIMEOUTS times{1, 0, 0, 0, 0};
        return SetCommState(open_.Get(), &settings) && SetCommTimeouts(open_.Get(), &times);
    }
};

} // namespace

LineOpener ComLines(std::string name)
{
    return [name = std::move(name)] { return std::make_unique<ComLine>(name); };
}

} // namespace simulator
