// Callbacks as a host gets them: when, on which thread, and what a loss, a removal and the service's end do to them.
#include <atomic>
#include <future>
#include <thread>
#include <tuple>

#include "api/handset_fixture.h"
#include "callback/host_functions.h"

namespace {

using Types = std::vector<uint32_t>;

constexpr uint32_t kVariance = 49;
constexpr DWORD kTick = 2050; // one poll, and a little

class CallbackTest : public HandsetTest
{
protected:
    CallbackTest() { StartService(); }
    ~CallbackTest() override
    {
        SetAction({});
        TakeTypes();
    }

    PHN_ERROR Set(int32_t type, uint32_t remove = 0) { return CALL(PHN_SetCallback)(type, Tell, remove); }

    void Report(uint16_t flags)
    {
        bench_.Handset().Change(0, [=](simulator::Phone& phone) { phone.variance = flags; });
    }

    uint64_t Polls() { return bench_.Handset().Requests(kVariance); }
};

} // namespace

TEST_F(CallbackTest, OnePollPerTwoSecondsTellsOnTheLoadingThread)
{
    EXPECT_EQ(Set(PHN_CALLBACK_REMOVED), PHN_ERROR_NONE);
    Report(0x01FF);
    RunFor(kTick);
    EXPECT_EQ(Polls(), 0u) << "the removal is not polled";

    std::thread([this] { EXPECT_EQ(Set(PHN_CALLBACK_ALL), PHN_ERROR_NONE); }).join();
    const uint64_t before = bench_.Handset().Requests();
    RunFor(kTick);
    RunFor(kTick);
    EXPECT_EQ(bench_.Handset().Requests() - before, 2u) << "the polls and nothing else";
    EXPECT_EQ(Polls(), 2u);
    Types types;
    for (const Told& told : TakeTold()) {
        types.push_back(told.type);
        EXPECT_EQ(told.thread, GetCurrentThreadId());
    }
    EXPECT_EQ(types, (Types{1, 2, 3, 4, 5, 9})) << "reported once";

    EXPECT_EQ(Set(PHN_CALLBACK_ALL, 1), PHN_ERROR_NONE);
    RunFor(kTick);
    EXPECT_EQ(Polls(), 2u);
}

TEST_F(CallbackTest, TheLossIsToldBeforeTheServicesGoAndEndsEveryRegistration)
{
    Set(PHN_CALLBACK_ALL);
    PHN_ERROR inside = PHN_ERROR_NONE;
    SetAction([&](uint32_t) { inside = CALL(PHN_GetNetworkErrorString)(0, std::string(40, ' ').data(), 40); });
    bench_.Unplug();
    ASSERT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
    EXPECT_EQ(inside, PHN_ERROR_INVALID_PARAMETER) << "the service object was there, the code has no text";
    const std::vector<Told> told = TakeTold();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].type, uint32_t{PHN_CALLBACK_REMOVED});
    EXPECT_EQ(told[0].thread, GetCurrentThreadId());

    SetAction({});
    bench_.Plug();
    ASSERT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_SERVICE_OBJECT; }));
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    Report(0x01FF);
    const uint64_t polls = Polls();
    RunFor(kTick);
    EXPECT_EQ(Polls(), polls);
    Set(PHN_CALLBACK_SMS);
    RunFor(kTick);
    EXPECT_EQ(Polls(), polls + 1);
    bench_.Unplug();
    ASSERT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
    EXPECT_EQ(TakeTypes(), Types{PHN_CALLBACK_SMS});
}

TEST_F(CallbackTest, AFunctionMayEndTheServiceAndNothingIsCalledAfterIt)
{
    Set(PHN_CALLBACK_ALL);
    SetAction([this](uint32_t) { EXPECT_EQ(CALL(PHN_Shutdown)(), PHN_ERROR_NONE); });
    Report(0x01FF);
    RunFor(kTick);
    RunFor(kTick);
    EXPECT_EQ(TakeTypes(), Types{PHN_CALLBACK_CONNECTION_INFO});
    EXPECT_EQ(Polls(), 1u);
    bench_.Unplug();
    ASSERT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
    EXPECT_EQ(TakeTypes(), Types{});
}

TEST_F(CallbackTest, WhatEndsARegistrationReturnsWhenItsFunctionHasEnded)
{
    const auto changes = [this] {
        Report(0x0020);
        RunFor(kTick);
    };
    const auto unplug = [this] {
        bench_.Unplug();
        PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; });
    };
    const std::tuple<int32_t, std::function<void()>, std::function<PHN_ERROR()>> cases[] = {
        {PHN_CALLBACK_STATE_INFO, changes, [this] { return Set(PHN_CALLBACK_STATE_INFO, 1); }},
        {PHN_CALLBACK_STATE_INFO, changes, [this] { return CALL(PHN_Shutdown)(); }},
        {PHN_CALLBACK_REMOVED, unplug, [this] { return Set(PHN_CALLBACK_REMOVED, 1); }},
    };
    for (const auto& [type, tell, end] : cases) {
        EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
        EXPECT_EQ(Set(type), PHN_ERROR_NONE);
        std::atomic<bool> running = false;
        std::thread ender;
        SetAction([&, &end = end](uint32_t) { // clang 14 captures no structured binding by itself
            running = true;
            std::promise<void> started;
            ender = std::thread([&] {
                started.set_value();
                end();
                EXPECT_FALSE(running);
            });
            started.get_future().wait();
            std::this_thread::sleep_for(std::chrono::milliseconds(100)); // one that waits for nobody is over by then
            running = false;
        });
        tell();
        ASSERT_TRUE(ender.joinable());
        ender.join();
        EXPECT_EQ(TakeTypes(), Types{static_cast<uint32_t>(type)});
    }
}
