// The callback object alone: what its registrations post and keep, and what is left when it is released.
#include <tuple>

#include "callback/host_functions.h"
#include "link/device_window.h"
#include "link/scripted_port.h"
#include "phn_platform_test.h"
#include "status/callback.h"

namespace {

using Types = std::vector<uint32_t>;
using Posts = std::vector<LPARAM>;

constexpr char kClass[] = "registration test";

class RegistrationTest : public ExchangeTest
{
protected:
    RegistrationTest()
    {
        CreateCallbackLocks();
        WNDCLASSA windowClass{};
        windowClass.lpfnWndProc = DefWindowProcA;
        windowClass.lpszClassName = kClass;
        RegisterClassA(&windowClass);
        window_ = CreateWindowExA(0, kClass, "", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
        callback_.emplace();
    }
    ~RegistrationTest() override
    {
        callback_.reset();
        DestroyWindow(window_);
        UnregisterClassA(kClass, nullptr);
        DestroyCallbackLocks();
        TakeTypes();
    }

    PHN_ERROR Set(int32_t type, uint32_t remove = 0, PHN_CALLBACK_FUNCTION function = Tell)
    {
        PHN_ERROR error = 0xAAAA;
        const bool done = callback_->SetCallback(window_, Device(), type, function, remove, &error);
        EXPECT_EQ(done, error == PHN_ERROR_NONE);
        return error;
    }

    // What the window was told to do since the last call: 1 to start polling, 0 to stop.
    Posts TakePosts()
    {
        Posts posts;
        MSG message;
        while (PeekMessageA(&message, window_, 0, 0, PM_REMOVE)) {
            EXPECT_EQ(message.message, RegisterWindowMessageA("WM_CALLBACK_POLL_MSG"));
            EXPECT_EQ(message.wParam, 0u);
            posts.push_back(message.lParam);
        }
        return posts;
    }

    // One tick at which the handset reports these flags.
    Types Tick(uint16_t flags)
    {
        port_->answers.push_back(
            {{0, 0, 0, 0, 0, 0, 0, 0, static_cast<uint8_t>(flags), static_cast<uint8_t>(flags >> 8)}});
        callback_->CallbackTimerFunction(window_, Device());
        return TakeTypes();
    }

    void Retire()
    {
        CCallbackLocks locks;
        callback_->Retire();
    }

    HWND window_;
    std::optional<CCallback> callback_;
};

} // namespace

TEST_F(RegistrationTest, PollingRunsFromTheFirstPolledRegistrationToTheLastRemoval)
{
    // Neither the removal of what was never registered nor the loss is polled; a type counts once.
    const std::tuple<int32_t, uint32_t, Posts> steps[] = {
        {PHN_CALLBACK_NETWORK_INFO, 1, {}}, {PHN_CALLBACK_REMOVED, 0, {}},      {PHN_CALLBACK_NETWORK_INFO, 0, {1}},
        {PHN_CALLBACK_NETWORK_INFO, 0, {}}, {PHN_CALLBACK_SMS, 0, {}},          {PHN_CALLBACK_NETWORK_INFO, 2, {}},
        {PHN_CALLBACK_NETWORK_INFO, 2, {}}, {PHN_CALLBACK_SMS, 1, {0}},         {PHN_CALLBACK_REMOVED, 1, {}},
        {PHN_CALLBACK_ALL, 0, {1}},         {PHN_CALLBACK_BATTERY_INFO, 1, {}}, {PHN_CALLBACK_ALL, 1, {0}},
    };
    for (const auto& [type, remove, posts] : steps) {
        EXPECT_EQ(Set(type, remove), PHN_ERROR_NONE);
        EXPECT_EQ(TakePosts(), posts) << type << ' ' << remove;
    }
}

TEST_F(RegistrationTest, WhatCannotBePolledIsRegisteredWhenItCan)
{
    for (const int32_t type : {PHN_CALLBACK_SMS, PHN_CALLBACK_ALL}) {
        const auto expectFailure = [&](HWND window, const std::string& error) {
            HWND other = std::exchange(window_, window);
            log_.TakeLines();
            EXPECT_EQ(Set(type), PHN_ERROR_FAILED);
            EXPECT_EQ(log_.TakeLines().back(),
                      "CCallback Error CCallback - Unable to post the poll message. Last error " + error);
            window_ = other;
            EXPECT_EQ(Tick(0x01FF), Types{});
            callback_->NotifyDeviceState(false);
            EXPECT_EQ(TakeTypes(), Types{});
        };
        platform_test::FailCall("PostMessageA", ERROR_NOT_ENOUGH_QUOTA);
        expectFailure(window_, "0x718");
        expectFailure(nullptr, "0x578");
        EXPECT_EQ(Set(type), PHN_ERROR_NONE);
        EXPECT_EQ(TakePosts(), Posts{1});
        Set(type, 1);
        TakePosts();
    }
}

TEST_F(RegistrationTest, AllTypesAreTakenInTheirOrderAndAnUnknownOneChangesNothing)
{
    log_.TakeLines();
    for (const int32_t type : {6, 7, 8, 11, 14, 15, 16}) {
        EXPECT_EQ(Set(type), PHN_ERROR_NOT_SUPPORTED);
        EXPECT_EQ(Set(type, 1), PHN_ERROR_NOT_SUPPORTED);
    }
    EXPECT_EQ(log_.TakeLines(), Lines{});
    EXPECT_EQ(Set(PHN_CALLBACK_ALL, 7), PHN_ERROR_NONE);
    Lines lines;
    for (const char* type :
         {"CONNECTION_INFO", "STATE_INFO", "NETWORK_INFO", "BATTERY_INFO", "SMS", "ACTIVATION", "REMOVED"})
        lines.push_back(std::string("CCallback Comment SetCallback - PHN_CALLBACK_") + type + " = 7");
    EXPECT_EQ(log_.TakeLines(), lines);
    EXPECT_EQ(TakePosts(), Posts{});
}

TEST_F(RegistrationTest, TheFirstFunctionOfATypeStaysUntilItIsRemoved)
{
    for (const int32_t type : {PHN_CALLBACK_NETWORK_INFO, PHN_CALLBACK_REMOVED}) {
        Set(type);
        Set(type, 0, TellOther);
    }
    EXPECT_EQ(Tick(0x0003), Types{3});
    callback_->NotifyDeviceState(true);
    EXPECT_EQ(TakeTypes(), Types{});
    callback_->NotifyDeviceState(false);
    EXPECT_EQ(TakeTypes(), Types{10});
    for (const int32_t type : {PHN_CALLBACK_NETWORK_INFO, PHN_CALLBACK_REMOVED}) {
        Set(type, 1, TellOther); // whatever function it names
        Set(type, 0, TellOther);
    }
    EXPECT_EQ(Tick(0x0001), Types{103});
    callback_->NotifyDeviceState(false);
    EXPECT_EQ(TakeTypes(), Types{110});
}

TEST_F(RegistrationTest, ATickCallsWhatIsRegisteredAndHasChanged)
{
    const std::tuple<int32_t, uint16_t, Types> rows[] = {
        {PHN_CALLBACK_CONNECTION_INFO, 0x0010, {1}},
        {PHN_CALLBACK_CONNECTION_INFO, 0x0003, {}},
        {PHN_CALLBACK_STATE_INFO, 0x0020, {2}},
        {PHN_CALLBACK_NETWORK_INFO, 0x0008, {3}},
        {PHN_CALLBACK_NETWORK_INFO, 0x01F0, {}},
        {PHN_CALLBACK_BATTERY_INFO, 0x0040, {4}},
        {PHN_CALLBACK_SMS, 0x0080, {5}},
        {PHN_CALLBACK_ACTIVATION, 0x0100, {9}},
        {PHN_CALLBACK_REMOVED, 0xFFFF, {}},
        {PHN_CALLBACK_ALL, 0x01FF, {1, 2, 3, 4, 5, 9}},
        {PHN_CALLBACK_ALL, 0xFE00, {}},
    };
    for (const auto& [registered, flags, told] : rows) {
        Set(registered);
        EXPECT_EQ(Tick(flags), told) << registered << ' ' << flags;
        Set(PHN_CALLBACK_ALL, 1);
    }
    EXPECT_EQ(port_->requests.back(), (Bytes{49, 0, 0, 0, 1, 0}));
    EXPECT_EQ(port_->lastTimeout, 15000u);

    const size_t asked = port_->requests.size();
    callback_->CallbackTimerFunction(nullptr, Device());
    callback_->CallbackTimerFunction(window_, nullptr);
    EXPECT_EQ(port_->requests.size(), asked);
}

TEST_F(RegistrationTest, EachCallIsLoggedWithItsFunctionAndAReplyThatCannotBeReadTellsNothing)
{
    Set(PHN_CALLBACK_BATTERY_INFO);
    log_.TakeLines();
    Tick(0x0040);
    char line[160];
    std::snprintf(line, sizeof line,
                  "CCallback Comment CallbackTimerFunction - CALLBACK_FLAG_BATTERY_INFO bit set with "
                  "m_pfnGetBatteryInfo = 0x%X",
                  static_cast<unsigned>(reinterpret_cast<uintptr_t>(&Tell)));
    EXPECT_EQ(log_.TakeLines(), (Lines{"CCallback Comment GetPhoneVariance being executed.", line}));

    port_->answers = {{{0, 0, 0, 0, 0, 0, 0, 0, 0xFF}}};
    callback_->CallbackTimerFunction(window_, Device());
    EXPECT_EQ(log_.TakeLines().back(),
              "CCallback Error GetPhoneVariance - dwRetBufferLen(9, 0x9) is less than CB_RET_FLAGS_RES(10, 0xA).");
    EXPECT_EQ(TakeTypes(), Types{});
}

TEST_F(RegistrationTest, AReleasedObjectStopsThePollOnceAndRegistersNothingMore)
{
    callback_.emplace(); // never used: there is nothing to stop
    EXPECT_EQ(TakePosts(), Posts{});
    Set(PHN_CALLBACK_BATTERY_INFO);
    callback_.emplace();
    EXPECT_EQ(TakePosts(), (Posts{1, 0}));

    Set(PHN_CALLBACK_ALL);
    Retire();
    EXPECT_EQ(TakePosts(), (Posts{1, 0}));
    // A host's thread that came in before still holds the object.
    EXPECT_EQ(Set(PHN_CALLBACK_ALL), PHN_ERROR_NONE);
    EXPECT_EQ(Tick(0x01FF), Types{});
    callback_->NotifyDeviceState(false);
    callback_.reset();
    EXPECT_EQ(TakeTypes(), Types{});
    EXPECT_EQ(TakePosts(), Posts{});
}
