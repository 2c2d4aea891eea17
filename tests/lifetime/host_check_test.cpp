// What a host does against the contract is told once of each kind where PHNNRV_CHECK_HOST asks for that, else nothing.
#include <thread>

#include "api/handset_fixture.h"
#include "callback/host_functions.h"
#include "phn_platform_test.h"

namespace {

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;

constexpr DWORD kPatience = 5000;
constexpr DWORD kCycle = 15000;
constexpr DWORD kExchange = 15000;
constexpr DWORD kDeletion = 301000; // how long a reply to a deletion of everything is waited for

// The test itself is the host; the fixture's members are its tools.
class HostCheckTest : public HandsetTest
{
public:
    HostCheckTest() { bench_.SetLoggingLevel(0); }
    ~HostCheckTest() override
    {
        SetAction({});
        unsetenv("PHNNRV_CHECK_HOST");
    }

    PHN_ERROR Register(int32_t type, PHN_CALLBACK_FUNCTION function = Tell)
    {
        return CALL(PHN_SetCallback)(type, function, 0);
    }

    void LeaveMessagesAlone()
    {
        StartService();
        Register(PHN_CALLBACK_REMOVED);
        AdvanceClock(kPatience + 1);
        Battery();
        AdvanceClock(kPatience + 1);
        Battery();
    }

    void LeaveMessagesAloneAndCallNothing()
    {
        StartService();
        RunFor(300); // starts the watch thread
        Register(PHN_CALLBACK_SMS);
        for (int cycle = 0; cycle < 2; ++cycle) {
            EXPECT_TRUE(AwaitBlocked(kCycle));
            AdvanceClock(kCycle);
        }
        EXPECT_TRUE(AwaitBlocked(kCycle));
    }

    void EndTheLoadingThread()
    {
        std::thread([this] { Load(); }).join();
        Battery();
        Battery();
    }

    void StartInsideTheRemoval()
    {
        StartService();
        Register(PHN_CALLBACK_REMOVED);
        SetAction([this](uint32_t) {
            CALL(PHN_Startup)();
            CALL(PHN_Startup)();
        });
        bench_.Unplug();
        EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
    }

    void UnloadDuringACall()
    {
        bench_.Plug();
        const HMODULE library = LoadLibraryA(bench_.LibraryPath().c_str());
        void* const address = reinterpret_cast<void*>(GetProcAddress(library, "PHN_Startup"));
        const auto startup = reinterpret_cast<decltype(&PHN_Startup)>(address);
        bench_.Handset().AddFault("silence@1");
        std::thread caller([&] {
            startup();
            startup();
        });
        EXPECT_TRUE(AwaitBlocked(kExchange));
        FreeLibrary(library); // ends the read, and leaves the thread a second to be gone
        caller.join();
    }

    void RegisterSecondFunctions()
    {
        StartService();
        Register(PHN_CALLBACK_SMS);
        Register(PHN_CALLBACK_SMS);
        Register(PHN_CALLBACK_SMS, TellOther);
        Register(PHN_CALLBACK_ALL, TellOther);
    }

    void ForgetToSetSizes()
    {
        StartService();
        for (const uint32_t size : {65536u, 65537u, 0xCCCCCCCCu}) {
            PHN_BATTERY_INFO info{size, 0, 0};
            EXPECT_EQ(CALL(PHN_GetBatteryInfo)(&info), PHN_ERROR_NONE);
        }
    }

    void BehaveWell()
    {
        StartService();
        Register(PHN_CALLBACK_ALL);
        SetAction([this](uint32_t) { Battery(); });
        for (int tick = 0; tick < 4; ++tick) {
            Battery();
            RunFor(2050);
        }
        // A call that lasts is no silence of the thread that makes it.
        Register(PHN_CALLBACK_REMOVED);
        bench_.Handset().AddFault("silence@38");
        std::thread clock([this] {
            EXPECT_TRUE(AwaitBlocked(kDeletion));
            AdvanceClock(kPatience + 1);
            CALL(PHN_GetNetworkErrorString)(0, std::string(40, ' ').data(), 40);
            AdvanceClock(kDeletion - kPatience - 1);
        });
        CALL(PHN_DeleteAllContacts)();
        clock.join();
        Battery();
        CALL(PHN_SetCallback)(PHN_CALLBACK_ALL, Tell, 1);
        AdvanceClock(kPatience + 1);
        Battery();
        bench_.Unplug();
        EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
    }
};

const std::pair<void (HostCheckTest::*)(), const char*> kHosts[] = {
    {&HostCheckTest::LeaveMessagesAlone,
     "The loading thread dispatched no message for 5 s while callbacks were registered."},
    {&HostCheckTest::LeaveMessagesAloneAndCallNothing,
     "The loading thread dispatched no message for 5 s while callbacks were registered."},
    {&HostCheckTest::EndTheLoadingThread, "The loading thread ended before the library was unloaded."},
    {&HostCheckTest::StartInsideTheRemoval, "PHN_Startup was called inside a removal callback."},
    {&HostCheckTest::UnloadDuringACall, "A call was made, or not over, while the library was being unloaded."},
    {&HostCheckTest::RegisterSecondFunctions,
     "A second function for callback type 5 was not registered: the first one stays."},
    {&HostCheckTest::ForgetToSetSizes, "PHN_GetBatteryInfo was given a uSize of 0x10001, which no record has."},
    {&HostCheckTest::BehaveWell, nullptr},
};

// A row, and whether the check is on.
class HostCheckRows : public HostCheckTest, public testing::WithParamInterface<std::tuple<size_t, bool>>
{
};

} // namespace

TEST_P(HostCheckRows, TellsOnceAndOnlyWhenItIsOn)
{
    const auto [row, isOn] = GetParam();
    const auto& [host, text] = kHosts[row];
    setenv("PHNNRV_CHECK_HOST", isOn ? "1" : "0", 1);
    (this->*host)();
    EXPECT_EQ(bench_.TakeLog(), isOn && text ? Lines{std::string("CCalderApp Error Check Host - ") + text} : Lines{});
}

INSTANTIATE_TEST_SUITE_P(Hosts, HostCheckRows,
                         testing::Combine(testing::Range(size_t{0}, std::size(kHosts)), testing::Bool()));
