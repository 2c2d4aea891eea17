#include "manners/host_session.h"

#include <algorithm>
#include <string>

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
    amid();
    ReplugHandset();
    EXPECT_EQ(CALL(PHN_Shutdown)(), PHN_ERROR_NONE);
    Unload();
}

std::string HostSession::CallAll()
{
    std::string output, all;
    for (const ExportRow& row : ExportTable([this](const char* name) { return FindAddress(name); }, Tell)) {
        EXPECT_EQ(CallExport(row, &output), row.success) << row.name;
        all += output;
    }
    return all;
}

void HostSession::ReplugHandset()
{
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
