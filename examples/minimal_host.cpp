// The smallest host in C++ that follows a handset: it prints the identity and the status, then the battery as it
// changes; when the handset is unplugged it waits for its return and starts over. It ends by Ctrl-C, or after as many
// seconds as its argument says. It is linked with the library, so the thread that runs main has loaded it and
// dispatches its window messages. README.md has the lines that compile it.
#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "phnnrv.hpp"

PHNNRV_PROMPT_READS; // each answer comes some 10 ms sooner, on Linux

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

int Fail(const char* what, phnnrv::Error error)
{
    std::fprintf(stderr, "%s: error %u %s\n", what, static_cast<unsigned>(error.code),
                 std::string(error.name()).c_str());
    return 1;
}

void PrintBattery(const phnnrv::Handset& handset)
{
    if (const auto battery = handset.Battery())
        std::printf("battery %u %u\n", static_cast<unsigned>(battery->uBattery1),
                    static_cast<unsigned>(battery->uBattery2));
    else
        Fail("battery", battery.error());
}

void PrintIdentityAndStatus(const phnnrv::Handset& handset)
{
    if (const auto identity = handset.Identity())
        std::printf("model   %s\nnumber  %s\n", phnnrv::Text(identity->szModel).c_str(), identity->szNumber);
    else
        Fail("identity", identity.error());
    if (const auto network = handset.Network())
        std::printf("network %s, %d\n", network->szNetwork26, static_cast<int>(network->nNetwork22));
    else
        Fail("network", network.error());
    PrintBattery(handset);
}

// Waits a moment, and dispatches what has come.
void DispatchMessages()
{
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

} // namespace

int main(int argc, char** argv)
{
    std::setvbuf(stdout, nullptr, _IONBF, 0); // lines appear at once, in a pipe too
    const auto end =
        steady_clock::now() + (argc > 1 ? std::chrono::seconds(std::atoi(argv[1])) : std::chrono::years(1));
    const auto left = [end] { return std::chrono::duration_cast<milliseconds>(end - steady_clock::now()); };

    std::atomic<bool> isUnplugged = false;
    phnnrv::Handset handset;
    // The first may be called on a thread of the library's: it sets a flag, no more. Both outlast a restart.
    static_cast<void>(handset.On(phnnrv::Change::Removed, [&] { isUnplugged = true; }));
    static_cast<void>(handset.On(phnnrv::Change::Battery, [&] { PrintBattery(handset); }));
    while (left().count() > 0) {
        isUnplugged = false;
        if (const auto started = handset.Wait(left()); !started)
            return Fail("no handset", started.error());
        PrintIdentityAndStatus(handset);
        while (!isUnplugged && left().count() > 0)
            DispatchMessages();
        if (isUnplugged)
            std::puts("unplugged; waiting for its return");
    }
    return 0;
}
