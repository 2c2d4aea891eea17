// The library's hidden window: a host that ends, a system that closes windows, a second copy of the library.
#include <thread>

#include "api/handset_fixture.h"

namespace fs = std::filesystem;

namespace {

using WindowTest = HandsetTest;

} // namespace

TEST_F(WindowTest, ARequestToQuitDuringStartupReachesTheHostsLoop)
{
    Load();
    PostQuitMessage(7);
    std::thread person([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300)); // several turns of the wait see the request
        bench_.Plug();
    });
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    person.join();
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), FALSE);
    EXPECT_EQ(message.wParam, 7u);
}

TEST_F(WindowTest, AWindowThatIsToldToCloseStillSeesTheHandsetGo)
{
    StartService();
    EXPECT_EQ(SendMessageA(FindWindowExA(nullptr, nullptr, "PHNNRVDeviceWindow", nullptr), WM_CLOSE, 0, 0), 0);
    bench_.Unplug();
    EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
}

TEST_F(WindowTest, OfTwoCopiesEachRunsItsOwnCode)
{
    const fs::path path = bench_.LibraryPath();
    const fs::path copy = path.parent_path() / ("copy" + path.extension().string());
    fs::copy_file(path, copy);
    const HMODULE other = LoadLibraryA(path.string().c_str());
    ASSERT_TRUE(other);
    Load(copy);
    ASSERT_TRUE(FreeLibrary(other));
    bench_.Plug();
    EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_SERVICE_OBJECT; }));
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    bench_.Unplug();
    EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
}
