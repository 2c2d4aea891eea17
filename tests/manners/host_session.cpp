#include "manners/host_session.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "api/export_table.h"
#include "callback/host_functions.h"

namespace {

constexpr DWORD kTick = 2050; // one poll, and a little
constexpr uint16_t kAllChanged = 0x01FF;

} // namespace

HostSession::HostSession()
{
    bench_.SetLoggingLevel(TestBench::kAllLines);
}

void HostSession::Run(const std::function<void()>& amid)
{
    StartService();
    CallAll();
    PutContact();
    amid();
    ReplugHandset();
    EXPECT_EQ(CALL(PHN_Shutdown)(), PHN_ERROR_NONE);
    Unload();
}

void HostSession::CallAll()
{
    std::array<uint8_t, 600> record{};
    std::array<uint8_t, 1500> data{};
    const uint8_t* const buffer = data.data();
    const auto find = [this](const char* name) { return reinterpret_cast<void*>(Find<void()>(name)); };
    for (const ExportRow& row : ExportTable(find)) {
        const auto size = static_cast<uint32_t>(row.size);
        constexpr auto kRoom = static_cast<uint32_t>(data.size());
        std::memcpy(record.data(), &size, sizeof size);
        std::memcpy(record.data() + 4, &buffer, sizeof buffer);
        std::memcpy(record.data() + 4 + sizeof buffer, &kRoom, sizeof kRoom);
        row.call(record.data());
    }
}

void HostSession::PutContact()
{
    constexpr std::string_view kCard =
        "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Anna Berg\r\nTEL;TYPE=CELL:5550142731\r\nEND:VCARD\r\n";
    std::string text(kCard);
    PHN_CONTACT_RECORD record{sizeof record, text.data(), static_cast<uint32_t>(text.size())};
    EXPECT_EQ(CALL(PHN_SetContact)(0, &record), PHN_ERROR_NONE);
}

void HostSession::ReplugHandset()
{
    EXPECT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_ALL, Tell, 0), PHN_ERROR_NONE);
    bench_.Handset().Change(0, [](simulator::Phone& phone) { phone.variance = kAllChanged; });
    RunFor(kTick);
    bench_.Unplug();
    EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
    const std::vector<uint32_t> told = TakeTypes();
    EXPECT_TRUE(std::ranges::count(told, uint32_t{PHN_CALLBACK_REMOVED}) == 1 && told.size() > 1);
    bench_.Plug();
    EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_SERVICE_OBJECT; }));
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
}
