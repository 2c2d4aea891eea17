// Windows, messages and timers, on the thread that owns them and across threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include <windows.h>

namespace {

constexpr char kClass[] = "PlatformTestWindow";

// A window whose procedure notes the messages that these tests are about and answers WM_APP with its two parameters.
class TestWindow
{
public:
    TestWindow()
    {
        WNDCLASSA definition{};
        definition.lpfnWndProc = Procedure;
        definition.lpszClassName = kClass;
        RegisterClassA(&definition); // already there when a test makes a second window
        handle = CreateWindowExA(0, kClass, "", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
        SetWindowLongPtrA(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        while (PeekMessageA(&message, handle, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
    }
    ~TestWindow()
    {
        DestroyWindow(handle);
        UnregisterClassA(kClass, nullptr);
    }
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    HWND handle = nullptr;
    HWND answers = nullptr; // the window that a WM_USER is sent on to
    MSG message{};          // the last one that was looked at
    std::vector<UINT> seen;
    DWORD thread = 0; // that the procedure ran on

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* const self = reinterpret_cast<TestWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        const UINT noted[] = {WM_DESTROY, WM_NCDESTROY, WM_TIMER, WM_USER, WM_APP};
        if (self && std::ranges::count(noted, message)) {
            self->seen.push_back(message);
            self->thread = GetCurrentThreadId();
        }
        if (message == WM_USER)
            return SendMessageA(self->answers, WM_APP, wParam, lParam) + 1;
        return message == WM_APP ? static_cast<LRESULT>(wParam) * 100 + lParam
                                 : DefWindowProcA(window, message, wParam, lParam);
    }
};

TEST(Windows, AreMadeFoundAndDestroyed)
{
    HWND gone = nullptr;
    {
        TestWindow window;
        gone = window.handle;
        ASSERT_NE(gone, nullptr);
        EXPECT_EQ(FindWindowExA(nullptr, nullptr, "platformtestWINDOW", nullptr), gone);
        EXPECT_FALSE(UnregisterClassA(kClass, nullptr)) << "it has a window";
        std::thread([&] { EXPECT_FALSE(DestroyWindow(gone)) << "it is another thread's"; }).join();
        PostMessageA(gone, WM_APP, 0, 0);
        DestroyWindow(gone);
        EXPECT_EQ(window.seen, (std::vector<UINT>{WM_DESTROY, WM_NCDESTROY}));
        EXPECT_FALSE(PeekMessageA(&window.message, nullptr, WM_APP, WM_APP, PM_REMOVE)) << "it went with its window";
    }
    EXPECT_FALSE(PostMessageA(gone, WM_APP, 0, 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_WINDOW_HANDLE});
    EXPECT_EQ(CreateWindowExA(0, kClass, "", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr), nullptr);
}

TEST(Messages, ComeInOrderThroughFiltersAndTheEndComesLast)
{
    TestWindow first;
    TestWindow second;
    PostMessageA(first.handle, WM_APP, 1, 0);
    PostMessageA(second.handle, WM_APP, 2, 0);
    PostMessageA(first.handle, WM_APP + 1, 3, 0);

    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, first.handle, WM_APP + 2, WM_APP + 9, PM_REMOVE));
    PostQuitMessage(7);
    PostThreadMessageA(GetCurrentThreadId(), WM_APP, 4, 0);
    EXPECT_TRUE(PeekMessageA(&message, second.handle, 0, 0, PM_NOREMOVE));
    EXPECT_EQ(message.wParam, 2u);
    EXPECT_TRUE(PeekMessageA(&message, first.handle, WM_APP + 1, WM_APP + 1, PM_REMOVE));
    EXPECT_EQ(message.wParam, 3u);
    for (const WPARAM expected : {1u, 2u, 4u}) {
        EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
        EXPECT_EQ(message.wParam, expected);
    }
    EXPECT_EQ(message.hwnd, nullptr);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, UINT{WM_QUIT});
    EXPECT_EQ(message.wParam, 7u);
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST(Messages, SentOnesRunOnTheWindowsThreadAlsoWhileItSendsItself)
{
    TestWindow here;
    TestWindow* there = nullptr;
    const HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    std::thread other([&] {
        TestWindow window;
        window.answers = here.handle;
        there = &window;
        SetEvent(ready);
        while (GetMessageA(&window.message, nullptr, 0, 0) > 0)
            DispatchMessageA(&window.message);
        EXPECT_EQ(window.thread, GetCurrentThreadId());
    });
    WaitForSingleObject(ready, INFINITE);
    // The other thread's procedure sends to the window here, while this thread waits for its answer.
    EXPECT_EQ(SendMessageA(there->handle, WM_USER, 3, 4), 305);
    EXPECT_EQ(here.thread, GetCurrentThreadId());
    PostMessageA(there->handle, WM_QUIT, 0, 0);
    other.join();
    CloseHandle(ready);
}

TEST(Waits, ForInputEndForAHandleForAMessageAndNotForWhatWasSeen)
{
    TestWindow window;
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const auto wait = [&](DWORD limit) { return MsgWaitForMultipleObjects(1, &event, FALSE, limit, QS_ALLINPUT); };
    EXPECT_EQ(wait(0), WAIT_TIMEOUT);
    SetEvent(event);
    EXPECT_EQ(wait(10000), WAIT_OBJECT_0);
    std::thread poster([&] { PostMessageA(window.handle, WM_APP, 1, 0); });
    EXPECT_EQ(wait(10000), WAIT_OBJECT_0 + 1);
    poster.join();
    EXPECT_TRUE(PeekMessageA(&window.message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_EQ(wait(0), WAIT_TIMEOUT);
    CloseHandle(event);
}

TEST(Timers, ComeWithTheirWindowAfterPostedMessagesUntilTheyAreKilled)
{
    TestWindow window;
    EXPECT_EQ(SetTimer(window.handle, 3, 20, nullptr), 3u);
    Sleep(60);
    PostMessageA(window.handle, WM_APP, 0, 0);
    for (const UINT expected : {UINT{WM_APP}, UINT{WM_TIMER}}) {
        EXPECT_EQ(GetMessageA(&window.message, window.handle, 0, 0), TRUE);
        EXPECT_EQ(window.message.message, expected);
    }
    EXPECT_EQ(window.message.wParam, 3u);
    DispatchMessageA(&window.message);
    EXPECT_EQ(window.seen.back(), UINT{WM_TIMER});
    EXPECT_TRUE(KillTimer(window.handle, 3));
    EXPECT_FALSE(KillTimer(window.handle, 3));
}

} // namespace
