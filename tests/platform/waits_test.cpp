// Events, mutexes, threads and waits: what holds on Windows and here alike.
#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <utility>

#include <windows.h>

namespace {

HANDLE NewEvent(bool manual, bool set)
{
    return CreateEventA(nullptr, manual, set, nullptr);
}

TEST(Waits, AnEventStaysSetOrIsTakenByOneWait)
{
    for (const auto& [manual, secondWait] : {std::pair{true, WAIT_OBJECT_0}, {false, DWORD{WAIT_TIMEOUT}}}) {
        const HANDLE event = NewEvent(manual, true);
        EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
        EXPECT_EQ(WaitForSingleObject(event, 0), secondWait);
        EXPECT_TRUE(SetEvent(event));
        EXPECT_TRUE(ResetEvent(event));
        EXPECT_EQ(WaitForSingleObject(event, 1), WAIT_TIMEOUT);
        CloseHandle(event);
    }
}

TEST(Waits, AnyTakesTheFirstAndAllTakesNothingUntilItHasEverything)
{
    const std::array events = {NewEvent(false, false), NewEvent(false, true), NewEvent(false, true)};
    const auto any = [&] { return WaitForMultipleObjects(3, events.data(), FALSE, 0); };
    const auto all = [&] { return WaitForMultipleObjects(3, events.data(), TRUE, 0); };
    EXPECT_EQ(all(), WAIT_TIMEOUT);
    EXPECT_EQ(any(), WAIT_OBJECT_0 + 1);
    EXPECT_EQ(any(), WAIT_OBJECT_0 + 2);
    for (const HANDLE event : events)
        SetEvent(event);
    EXPECT_EQ(all(), WAIT_OBJECT_0);
    EXPECT_EQ(any(), WAIT_TIMEOUT);
    for (const HANDLE event : events)
        CloseHandle(event);
}

TEST(Waits, AHandleThatIsClosedOrOfAnotherKindIsRefused)
{
    const std::array mixed = {NewEvent(true, true), NewEvent(true, true)};
    const HANDLE closed = mixed[1];
    CloseHandle(closed);
    const auto refused = [](const char* what, bool failed, DWORD error) {
        EXPECT_EQ(GetLastError(), error) << what;
        EXPECT_TRUE(failed) << what;
    };
    refused("wait on null", WaitForSingleObject(nullptr, 0) == WAIT_FAILED, ERROR_INVALID_HANDLE);
    refused("one closed", WaitForMultipleObjects(2, mixed.data(), FALSE, 0) == WAIT_FAILED, ERROR_INVALID_HANDLE);
    refused("no handles", WaitForMultipleObjects(0, mixed.data(), FALSE, 0) == WAIT_FAILED, ERROR_INVALID_PARAMETER);
    refused("an event as a mutex", !ReleaseMutex(mixed[0]), ERROR_INVALID_HANDLE);
    refused("close a closed one", !CloseHandle(closed), ERROR_INVALID_HANDLE);
    CloseHandle(mixed[0]);
}

TEST(Waits, AMutexBelongsToItsThreadAndIsAbandonedWithIt)
{
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, nullptr);
    const HANDLE taken = NewEvent(true, false);
    const HANDLE leave = NewEvent(true, false);
    std::thread owner([&] {
        WaitForSingleObject(mutex, INFINITE);
        SetEvent(taken);
        WaitForSingleObject(leave, INFINITE);
    });
    WaitForSingleObject(taken, INFINITE);
    EXPECT_EQ(WaitForSingleObject(mutex, 0), WAIT_TIMEOUT);
    EXPECT_FALSE(ReleaseMutex(mutex));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_OWNER});
    SetEvent(leave);
    owner.join();
    EXPECT_EQ(WaitForSingleObject(mutex, INFINITE), WAIT_ABANDONED);
    EXPECT_EQ(WaitForSingleObject(mutex, 0), WAIT_OBJECT_0); // taken again by its owner
    EXPECT_TRUE(ReleaseMutex(mutex));
    EXPECT_TRUE(ReleaseMutex(mutex));
    EXPECT_FALSE(ReleaseMutex(mutex));
    for (const HANDLE handle : {mutex, taken, leave})
        CloseHandle(handle);
}

TEST(Waits, ThreadsTakeTurnsWithoutLosingAWakeUp)
{
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    const std::array turns = {NewEvent(false, true), NewEvent(false, false)};
    int guarded = 0;
    int inTurns = 0;
    const auto count = [&](std::size_t own) {
        for (int i = 0; i < 1000; i++) {
            EnterCriticalSection(&section);
            EnterCriticalSection(&section);
            guarded++;
            LeaveCriticalSection(&section);
            LeaveCriticalSection(&section);
            WaitForSingleObject(turns[own], INFINITE);
            inTurns++;
            SetEvent(turns[1 - own]);
        }
    };
    std::thread other(count, 1);
    count(0);
    other.join();
    EXPECT_EQ(guarded, 2000);
    EXPECT_EQ(inTurns, 2000);
    DeleteCriticalSection(&section);
    for (const HANDLE turn : turns)
        CloseHandle(turn);
}

DWORD WINAPI DuplicateSelfAndEnd(LPVOID duplicate)
{
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), static_cast<HANDLE*>(duplicate), 0,
                    FALSE, DUPLICATE_SAME_ACCESS);
    EXPECT_EQ(WaitForSingleObject(*static_cast<HANDLE*>(duplicate), 0), WAIT_TIMEOUT);
    ExitThread(0);
}

TEST(Waits, ADuplicateOfTheOwnThreadNamesItElsewhere)
{
    HANDLE duplicate = nullptr;
    const HANDLE thread = CreateThread(nullptr, 0, DuplicateSelfAndEnd, &duplicate, 0, nullptr);
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(duplicate, 10000), WAIT_OBJECT_0);
    for (const HANDLE handle : {thread, duplicate})
        CloseHandle(handle);
}

} // namespace
