// phnnrv.hpp as a host linked with the library uses it: what that sees when it is loaded comes with the process.
#include <atomic>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

#include "phnnrv.hpp"
#include "simulator/lines/simulator.h"
#include "tests/support/messages.h"

PHNNRV_PROMPT_READS;

namespace {

using namespace std::chrono_literals;
using phnnrv::Change;
using phnnrv::Handset;

class CppHeaderTest : public testing::Test
{
protected:
    simulator::Simulator simulator_{std::getenv("PHNNRV_DEVICES"), simulator::UsbInterfaceName("0001")};
    Handset handset_;
};

} // namespace

TEST_F(CppHeaderTest, ChangesAreToldAgainAfterAnUnplugAndAReturn)
{
    std::atomic<unsigned> removals = 0;
    std::atomic<unsigned> percent = 0;
    ASSERT_TRUE(handset_.On(Change::Removed, [&] { ++removals; }));
    ASSERT_TRUE(handset_.On(Change::Battery, [&] { percent = handset_.Battery()->uBattery2; }));
    for (const unsigned visit : {1u, 2u}) {
        EXPECT_EQ(handset_.Battery().error().name(), "PHN_ERROR_NO_DEVICE");
        const std::jthread plugging([this] { simulator_.Replug(); });
        ASSERT_TRUE(handset_.Wait(30s)) << visit;
        simulator_.Control().SetBattery({1, static_cast<std::uint8_t>(visit)});
        EXPECT_TRUE(PumpUntil([&] { return percent == visit; })) << visit;
        simulator_.Unplug();
        EXPECT_TRUE(PumpUntil([&] { return removals == visit; })) << visit;
    }
}

TEST_F(CppHeaderTest, EveryFunctionAsksTheHandsetForItsOwn)
{
    simulator_.Start();
    ASSERT_TRUE(handset_.Wait(30s));
    const std::string card = *handset_.Contact(3);
    const std::string event = *handset_.Event(25);
    const std::string pdu("\0\0\2\x10\2\4\5\1\xD5\x56\x85\x08\x08\x11\0\3\x20\0\x10\x08\1\0\xA\1\0\1\4\x10\x14\x8D\x20",
                          31);
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(pdu.data()), pdu.size());
    const auto messages = handset_.Messages(3);
    EXPECT_EQ(messages->size(), handset_.MessageCount(3));
    const std::uint16_t message = messages->front().index;
    phnnrv::Record<PHN_PARAMETERS> parameters;
    parameters.wParameter3 = 299;

    const std::pair<std::uint32_t, std::function<bool()>> calls[] = {
        {3, [&] { return handset_.Connection().has_value(); }},
        {4, [&] { return phnnrv::Text(handset_.Network()->szNetwork26) == "Norvik Mobile"; }},
        {6, [&] { return phnnrv::Text(handset_.Identity()->szModel) == "Fjord 40"; }},
        {8, [&] { return handset_.SetRadioPower(true).has_value(); }},
        {9, [&] { return handset_.SetLock(true, "1234").error().name() == "PHN_ERROR_INVALID_LOCK_CODE"; }},
        {10, [&] { return handset_.ChangeLockCode("0000", "1234").has_value(); }},
        {13, [&] { return handset_.SetParameters(parameters).has_value(); }},
        {12, [&] { return handset_.Parameters()->wParameter3 == 299; }},
        {16, [&] { return handset_.Send(bytes).has_value(); }},
        {19, [&] { return handset_.Save(bytes).has_value(); }},
        {22, [&] { return handset_.MarkMessage(message, true).has_value(); }},
        {20, [&] { return handset_.DeleteMessage(message).has_value(); }},
        {21, [&] { return handset_.DeleteAllMessages(3) && handset_.Messages(3)->empty(); }},
        {26, [&] { return handset_.Calls(0)->size() == handset_.CallCount(0); }},
        {28, [&] { return handset_.ClearCalls(0) && handset_.Calls(0)->empty(); }},
        {31, [&] { return handset_.SetEvent(25, event).has_value(); }},
        {32, [&] { return handset_.DeleteEvent(25).has_value(); }},
        {33, [&] { return handset_.DeleteAllEvents().has_value(); }},
        {34, [&] { return handset_.FieldSizes().has_value(); }},
        {36, [&] { return handset_.SetContact(3, card) && *handset_.Contact(3) == card; }},
        {37, [&] { return handset_.DeleteContact(3).has_value(); }},
        {38, [&] { return handset_.DeleteAllContacts().has_value(); }},
        {39, [&] { return !handset_.PictureName(1)->empty(); }},
        {40, [&] { return !handset_.RingerName(1)->empty(); }},
        {41, [&] { return !handset_.GroupName(1)->empty(); }},
        {45, [&] { return handset_.Activate().has_value(); }},
    };
    for (const auto& [command, call] : calls) {
        const auto before = simulator_.Control().Requests(command);
        EXPECT_TRUE(call()) << command;
        EXPECT_GT(simulator_.Control().Requests(command), before) << command;
    }
    EXPECT_EQ(*handset_.NetworkErrorText(1025), "PHN_NETWORK_ERROR_1X_FADE, Fade");
}

TEST_F(CppHeaderTest, ThisProgramHasAskedForPromptReadsAndItsEnvironmentIsItsOwn)
{
    HKEY key = nullptr;
    DWORD value = 0;
    DWORD size = sizeof value;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Norvik\\LinkDesk", 0, KEY_READ, &key), ERROR_SUCCESS);
    RegQueryValueExA(key, "Prompt Reads", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size);
    RegCloseKey(key);
    EXPECT_EQ(value, 1u);
    EXPECT_FALSE(std::getenv("PHNNRV_PROMPT_READS"));
}
