// The beginning and the end of the service as a host sees them, and what is left after a failure.
#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

#include "api/handset_fixture.h"
#include "phn_platform_test.h"

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;

namespace {

constexpr std::uint32_t kInstanceLines = 0x3FF; // of the exports and of the instance

class StartupTest : public HandsetTest
{
protected:
    PHN_ERROR Startup() { return CALL(PHN_Startup)(); }
    PHN_ERROR Shutdown() { return CALL(PHN_Shutdown)(); }

    // Runs a call of the host while another thread lets the time pass for whoever waits with this time-out.
    PHN_ERROR WhileTimePasses(DWORD timeout, const std::function<PHN_ERROR()>& call)
    {
        std::atomic<bool> done = false;
        std::thread clock([&] {
            while (!done && AwaitBlocked(timeout))
                AdvanceClock(timeout);
        });
        const PHN_ERROR error = call();
        done = true;
        Sleep(timeout); // the last thing the clock waits for
        clock.join();
        return error;
    }
};

} // namespace

TEST_F(StartupTest, ListedModelsAreRefusedWhateverTheirCase)
{
    Lines begin{"CCalderApp Comment PHN_Startup is being executed."};
    for (const std::string service :
         {"Setup", "Connection Status", "Phonebook", "SMS", "Calendar", "Call History", "Callback"})
        begin.push_back("phnnrv Comment CreateObjects " + service + " Object");
    begin.push_back("phnnrv Comment GetVersion being executed.");
    bench_.SetLoggingLevel(kInstanceLines);
    bench_.Plug();
    Load();
    bench_.TakeLog();
    const std::pair<std::string, std::string> rows[] = {{"R3P", "1"}, {"t5w", "1"},  {"Wq", "2"}, {"n8R", "3"},
                                                        {"B4S", "3"}, {"g2HQ", "3"}, {"h2k", "4"}};
    for (const auto& [model, version] : rows) {
        bench_.Handset().SetModel(model);
        EXPECT_EQ(Startup(), PHN_ERROR_NOT_SUPPORTED) << model;
        Lines lines = begin;
        lines.push_back("phnnrv Comment GetVersion - Model version is " + model);
        lines.push_back("phnnrv Comment GetVersion - Phone model is eVer" + version + ".");
        lines.push_back("CCalderApp Error PHN_Startup - Model not supported.");
        EXPECT_EQ(bench_.TakeLog(), lines);
        EXPECT_EQ(Battery(), PHN_ERROR_NO_SERVICE_OBJECT);
        bench_.TakeLog();
    }
    bench_.Handset().SetModel("R3p\r\n\x1B%s"); // which forges no line of the log
    EXPECT_EQ(Startup(), PHN_ERROR_NONE);
    EXPECT_EQ(bench_.TakeLog().at(begin.size()), "phnnrv Comment GetVersion - Model version is R3p\\x0D\\x0A\\x1B%s");

    // An identity that cannot be read counts as the oldest class, and takes the objects of a running service with it.
    bench_.Handset().AddFault("status=3@6*1");
    EXPECT_EQ(Startup(), PHN_ERROR_NOT_SUPPORTED);
    const Lines lines = bench_.TakeLog();
    EXPECT_EQ(std::ranges::count(lines, begin[1]), 0) << "an object was made twice";
    EXPECT_EQ(std::ranges::count(lines, "phnnrv Error GetVersion - m_pSetupObject->GetDeviceInfo returned false."), 1);
    EXPECT_EQ(Battery(), PHN_ERROR_NO_SERVICE_OBJECT);
}

TEST_F(StartupTest, TheServiceEndsOnceAndBeginsAgainOnTheSamePort)
{
    StartService();
    EXPECT_EQ(bench_.Handset().Requests(1), 1u);
    EXPECT_EQ(bench_.Handset().Requests(6), 1u);
    EXPECT_EQ(Battery(), PHN_ERROR_NONE);
    EXPECT_EQ(Startup(), PHN_ERROR_NONE);
    EXPECT_EQ(Shutdown(), PHN_ERROR_NONE);
    EXPECT_EQ(bench_.Handset().Requests(2), 1u);
    bench_.TakeLog();
    EXPECT_EQ(Shutdown(), PHN_ERROR_NO_SERVICE_OBJECT);
    EXPECT_EQ(bench_.TakeLog().back(), "CCalderApp Error PHN_Shutdown - pInstance->m_pConnectionStatusObject is NULL.");
    EXPECT_EQ(Startup(), PHN_ERROR_NONE);
    bench_.Handset().AddFault("command@2*1");
    EXPECT_EQ(Shutdown(), PHN_ERROR_NONE);
    EXPECT_EQ(Battery(), PHN_ERROR_NO_SERVICE_OBJECT);
}

TEST_F(StartupTest, WithoutAHandsetItWaitsFifteenSecondsAndSaysSo)
{
    Load();
    bench_.TakeLog();
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(WhileTimePasses(50, [this] { return Startup(); }), PHN_ERROR_NO_DEVICE);
    EXPECT_GE(GetTickCount64() - begin, 15000u);
    EXPECT_EQ(bench_.TakeLog(), (Lines{"CCalderApp Comment PHN_Startup is being executed.",
                                       "CCalderApp Error PHN_Startup - hDevice is NULL."}));
    EXPECT_EQ(Shutdown(), PHN_ERROR_NO_DEVICE);
    EXPECT_EQ(bench_.TakeLog().back(), "CCalderApp Error PHN_Shutdown - hDevice is NULL.");
}

TEST_F(StartupTest, AGreetingWithoutAnswerStartsNothing)
{
    bench_.Plug();
    Load();
    bench_.Handset().AddFault("silence@1*1");
    bench_.TakeLog();
    EXPECT_EQ(WhileTimePasses(15000, [this] { return Startup(); }), PHN_ERROR_COMMUNICATION);
    EXPECT_EQ(bench_.TakeLog().size(), 2u);
    EXPECT_EQ(bench_.Handset().Requests(6), 0u);
    EXPECT_EQ(Battery(), PHN_ERROR_NO_SERVICE_OBJECT);
}

TEST_F(StartupTest, AServiceObjectThatIsBeingUsedOutlivesItsShutdown)
{
    StartService();
    bench_.Handset().AddFault("delay=300@5*1");
    PHN_ERROR error = PHN_ERROR_FAILED;
    std::thread host([&] { error = Battery(); });
    EXPECT_TRUE(bench_.Handset().WaitForRequests(5, 1, std::chrono::seconds(10)));
    EXPECT_EQ(Shutdown(), PHN_ERROR_NONE);
    host.join();
    EXPECT_EQ(error, PHN_ERROR_NONE);
}
