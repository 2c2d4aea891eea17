#include "api/handset_fixture.h"

#include <chrono>
#include <stdexcept>

namespace {

void DispatchPending()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

} // namespace

HandsetTest::~HandsetTest()
{
    if (library_)
        FreeLibrary(library_);
}

void HandsetTest::Load(const std::filesystem::path& library)
{
    library_ = LoadLibraryA(library.string().c_str());
    if (!library_)
        throw std::runtime_error("the library does not load: " + std::to_string(GetLastError()));
}

void HandsetTest::StartService()
{
    bench_.Plug();
    Load();
    if (const PHN_ERROR error = CALL(PHN_Startup)())
        throw std::runtime_error("PHN_Startup: " + std::to_string(error));
    bench_.TakeLog();
}

PHN_ERROR HandsetTest::Battery() const
{
    PHN_BATTERY_INFO info{};
    info.uSize = sizeof info;
    return CALL(PHN_GetBatteryInfo)(&info);
}

bool HandsetTest::PumpUntil(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        DispatchPending();
    }
    return true;
}

void HandsetTest::RunFor(DWORD milliseconds)
{
    DispatchPending();
    const UINT_PTR timer = SetTimer(nullptr, 0, milliseconds, nullptr);
    TestBench::AdvanceClock(milliseconds);
    MSG message{};
    const auto isOver = [&] { return !message.hwnd && message.message == WM_TIMER && message.wParam == timer; };
    while (GetMessageA(&message, nullptr, 0, 0) > 0 && !isOver())
        DispatchMessageA(&message);
    KillTimer(nullptr, timer);
    DispatchPending();
}

void* HandsetTest::FindAddress(const char* name) const
{
    void* const address = reinterpret_cast<void*>(GetProcAddress(library_, name));
    if (!address)
        throw std::runtime_error(std::string("not exported: ") + name);
    return address;
}
