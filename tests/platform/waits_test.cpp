// Events, mutexes, threads and waits: what holds on Windows and here alike.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <utility>

#include <windows.h>

namespace {

struct Closer
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Owned = std::unique_ptr<void, Closer>;

Owned NewEvent(bool manual, bool set)
{
    return Owned(CreateEventA(nullptr, manual, set, nullptr));
}

TEST(Waits, AnEventStaysSetOrIsTakenByOneWait)
{
    for (const auto& [manual, secondWait] : {std::pair{true, WAIT_OBJECT_0}, {false, DWORD{WAIT_TIMEOUT}}}) {
        const Owned event = NewEvent(manual, true);
        EXPECT_EQ(WaitForSingleObject(event.get(), 0), WAIT_OBJECT_0);
        EXPECT_EQ(WaitForSingleObject(event.get(), 0), secondWait) << "manual: " << manual;
        EXPECT_TRUE(SetEvent(event.get()));
        EXPECT_TRUE(ResetEvent(event.get()));
        EXPECT_EQ(WaitForSingleObject(event.get(), 1), WAIT_TIMEOUT);
    }
}

TEST(Waits, AnyTakesTheFirstAndAllTakesNothingUntilItHasEverything)
{
    const std::array owned = {NewEvent(false, false), NewEvent(false, true), NewEvent(false, true)};
    const std::array events = {owned[0].get(), owned[1].get(), owned[2].get()};
    const auto any = [&] { return WaitForMultipleObjects(3, events.data(), FALSE, 0); };
    const auto all = [&] { return WaitForMultipleObjects(3, events.data(), TRUE, 0); };
    EXPECT_EQ(all(), WAIT_TIMEOUT);
    EXPECT_EQ(any(), WAIT_OBJECT_0 + 1);
    EXPECT_EQ(any(), WAIT_OBJECT_0 + 2);
    for (const HANDLE event : events)
        SetEvent(event);
    EXPECT_EQ(all(), WAIT_OBJECT_0);
    EXPECT_EQ(any(), WAIT_TIMEOUT);
}

TEST(Waits, AHandleThatIsClosedIsRefused)
{
    const Owned open = NewEvent(true, true);
    const std::array both = {open.get(), NewEvent(true, true).get()}; // the second is closed at once
    const auto refused = [](const char* what, bool failed) {
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE}) << what;
        EXPECT_TRUE(failed) << what;
    };
    refused("wait on null", WaitForSingleObject(nullptr, 0) == WAIT_FAILED);
    refused("wait on one closed", WaitForMultipleObjects(2, both.data(), FALSE, 0) == WAIT_FAILED);
    refused("set a closed one", !SetEvent(both[1]));
    refused("close a closed one", !CloseHandle(both[1]));
}

TEST(Waits, AMutexBelongsToItsThreadAndIsAbandonedWithIt)
{
    const Owned mutex(CreateMutexA(nullptr, FALSE, nullptr));
    const Owned taken = NewEvent(true, false);
    const Owned leave = NewEvent(true, false);
    std::thread owner([&] {
        WaitForSingleObject(mutex.get(), INFINITE);
        SetEvent(taken.get());
        WaitForSingleObject(leave.get(), INFINITE);
    });
    WaitForSingleObject(taken.get(), INFINITE);
    EXPECT_EQ(WaitForSingleObject(mutex.get(), 0), WAIT_TIMEOUT);
    EXPECT_FALSE(ReleaseMutex(mutex.get())) << "of another thread";
    SetEvent(leave.get());
    owner.join();
    EXPECT_EQ(WaitForSingleObject(mutex.get(), INFINITE), WAIT_ABANDONED);
    EXPECT_TRUE(ReleaseMutex(mutex.get()));
    EXPECT_FALSE(ReleaseMutex(mutex.get())) << "released already";
}

TEST(Waits, ASetEventFreesOneOfItsManyWaitersOrAllAndOnlyAFullSetThoseWhoWantAll)
{
    const Owned once = NewEvent(false, false);
    const Owned taken = NewEvent(false, false);
    const Owned stop = NewEvent(true, false);
    const std::array both = {once.get(), stop.get()};
    std::atomic<int> takes = 0;
    std::array<std::thread, 4> any;
    for (std::thread& thread : any) {
        thread = std::thread([&] {
            while (WaitForMultipleObjects(2, both.data(), FALSE, INFINITE) == WAIT_OBJECT_0) {
                takes++;
                SetEvent(taken.get());
            }
        });
    }
    for (int i = 0; i < 100; i++) {
        SetEvent(once.get());
        WaitForSingleObject(taken.get(), INFINITE);
    }
    EXPECT_EQ(takes, 100);
    DWORD ofAll = WAIT_FAILED;
    std::thread all([&] { ofAll = WaitForMultipleObjects(2, both.data(), TRUE, INFINITE); });
    SetEvent(stop.get());
    for (std::thread& thread : any)
        thread.join();
    SetEvent(once.get());
    all.join();
    EXPECT_EQ(ofAll, WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(once.get(), 0), WAIT_TIMEOUT) << "taken";
}

} // namespace
