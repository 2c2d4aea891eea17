#include "api/handset_fixture.h"

#include <stdexcept>

void HandsetTest::Load(const std::filesystem::path& library)
{
    library_ = LoadLibraryA(library.string().c_str());
    if (!library_)
        throw std::runtime_error("the library does not load: " + std::to_string(GetLastError()));
}

void HandsetTest::Unload()
{
    if (library_)
        FreeLibrary(library_);
    library_ = nullptr;
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
    PHN_BATTERY_INFO info{sizeof info, 0, 0};
    return CALL(PHN_GetBatteryInfo)(&info);
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
