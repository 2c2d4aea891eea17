// Events, mutexes, threads and waits: what holds on Windows and here alike.
#include <gtest/gtest.h>

#include <array>
#include <tuple>

#include <windows.h>

namespace {

HANDLE NewEvent(bool manual, bool set)
{
    return CreateEventA(nullptr, manual, set, nullptr);
}

TEST(Waits, AnEventStaysSetOrIsTakenByOneWait)
{
    const std::tuple<bool, DWORD> kinds[] = {{true, WAIT_OBJECT_0}, {false, WAIT_TIMEOUT}};
    for (const auto& [manual, secondWait] : kinds) {
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
    EXPECT_EQ(any(), WAIT_TIMEOUT);
    for (const HANDLE event : events)
        SetEvent(event);
    EXPECT_EQ(all(), WAIT_OBJECT_0);
    EXPECT_EQ(any(), WAIT_TIMEOUT);
    for (const HANDLE event : events)
        CloseHandle(event);
}

TEST(Waits, AHandleThatIsClosedOrOfAnotherKindIsRefused)
{
    const HANDLE event = NewEvent(true, true);
    const HANDLE closed = NewEvent(true, true);
    CloseHandle(closed);
    const std::array mixed = {event, closed};
    const struct
    {
        const char* call;
        bool refused;
    } calls[] = {
        {"wait on null", WaitForSingleObject(nullptr, 0) == WAIT_FAILED},
        {"wait on a closed handle", WaitForSingleObject(closed, 0) == WAIT_FAILED},
        {"wait with a closed handle", WaitForMultipleObjects(2, mixed.data(), FALSE, 0) == WAIT_FAILED},
        {"set a closed handle", !SetEvent(closed)},
        {"release an event as a mutex", !ReleaseMutex(event)},
        {"close a closed handle", !CloseHandle(closed)},
    };
    for (const auto& call : calls) {
        EXPECT_TRUE(call.refused) << call.call;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE}) << call.call;
    }
    EXPECT_EQ(WaitForMultipleObjects(0, mixed.data(), FALSE, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    CloseHandle(event);
}

struct MutexJob
{
    HANDLE mutex;
    HANDLE taken = NewEvent(true, false);
    HANDLE leave = NewEvent(true, false);
};

DWORD WINAPI TakeAndEnd(LPVOID parameter)
{
    const auto* job = static_cast<MutexJob*>(parameter);
    WaitForSingleObject(job->mutex, INFINITE);
    SetEvent(job->taken);
    WaitForSingleObject(job->leave, INFINITE);
    ExitThread(7);
}

TEST(Waits, AMutexBelongsToItsThreadAndIsAbandonedWithIt)
{
    MutexJob job{CreateMutexA(nullptr, FALSE, nullptr)};
    DWORD id = 0;
    const HANDLE thread = CreateThread(nullptr, 0, TakeAndEnd, &job, 0, &id);
    WaitForSingleObject(job.taken, INFINITE);
    EXPECT_EQ(WaitForSingleObject(job.mutex, 0), WAIT_TIMEOUT);
    EXPECT_FALSE(ReleaseMutex(job.mutex));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_OWNER});

    const HANDLE same = OpenThread(SYNCHRONIZE, FALSE, id);
    DWORD code = 0;
    EXPECT_TRUE(GetExitCodeThread(thread, &code));
    EXPECT_EQ(code, STILL_ACTIVE);
    SetEvent(job.leave);
    EXPECT_EQ(WaitForSingleObject(same, INFINITE), WAIT_OBJECT_0);
    EXPECT_TRUE(GetExitCodeThread(thread, &code));
    EXPECT_EQ(code, 7u);

    EXPECT_EQ(WaitForSingleObject(job.mutex, INFINITE), WAIT_ABANDONED);
    EXPECT_EQ(WaitForSingleObject(job.mutex, 0), WAIT_OBJECT_0); // taken again by its owner
    EXPECT_TRUE(ReleaseMutex(job.mutex));
    EXPECT_TRUE(ReleaseMutex(job.mutex));
    EXPECT_FALSE(ReleaseMutex(job.mutex));
    for (const HANDLE handle : {thread, same, job.mutex, job.taken, job.leave})
        CloseHandle(handle);
}

struct HandOver
{
    CRITICAL_SECTION section;
    HANDLE turn[2] = {NewEvent(false, true), NewEvent(false, false)};
    int count = 0;
    LONG unguarded = 0;
};

DWORD WINAPI CountInTurns(LPVOID parameter)
{
    auto* shared = static_cast<HandOver*>(parameter);
    for (int i = 0; i < 1000; i++) {
        EnterCriticalSection(&shared->section);
        EnterCriticalSection(&shared->section);
        shared->count++;
        LeaveCriticalSection(&shared->section);
        LeaveCriticalSection(&shared->section);
        WaitForSingleObject(shared->turn[1], INFINITE);
        shared->unguarded++; // guarded by whose turn it is
        SetEvent(shared->turn[0]);
    }
    return 0;
}

TEST(Waits, ThreadsTakeTurnsWithoutLosingAWakeUp)
{
    HandOver shared;
    InitializeCriticalSection(&shared.section);
    const HANDLE thread = CreateThread(nullptr, 0, CountInTurns, &shared, 0, nullptr);
    for (int i = 0; i < 1000; i++) {
        EnterCriticalSection(&shared.section);
        shared.count++;
        LeaveCriticalSection(&shared.section);
        WaitForSingleObject(shared.turn[0], INFINITE);
        shared.unguarded++;
        SetEvent(shared.turn[1]);
    }
    WaitForSingleObject(thread, INFINITE);
    EXPECT_EQ(shared.count, 2000);
    EXPECT_EQ(shared.unguarded, 2000);
    EXPECT_TRUE(TryEnterCriticalSection(&shared.section));
    LeaveCriticalSection(&shared.section);
    DeleteCriticalSection(&shared.section);
    for (const HANDLE handle : {thread, shared.turn[0], shared.turn[1]})
        CloseHandle(handle);
}

DWORD WINAPI WaitForThread(LPVOID thread)
{
    return WaitForSingleObject(thread, INFINITE);
}

DWORD WINAPI EndAtOnce(LPVOID)
{
    return 0;
}

TEST(Waits, ADuplicateOfTheOwnThreadNamesItElsewhere)
{
    HANDLE self = nullptr;
    ASSERT_TRUE(DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &self, 0, FALSE,
                                DUPLICATE_SAME_ACCESS));
    EXPECT_EQ(WaitForSingleObject(self, 0), WAIT_TIMEOUT);
    const HANDLE waiter = CreateThread(nullptr, 0, WaitForThread, self, 0, nullptr);
    EXPECT_EQ(WaitForSingleObject(waiter, 20), WAIT_TIMEOUT); // it waits for this thread, not for itself
    const HANDLE ended = CreateThread(nullptr, 0, EndAtOnce, nullptr, 0, nullptr);
    EXPECT_EQ(WaitForSingleObject(ended, INFINITE), WAIT_OBJECT_0);
    CloseHandle(ended);
    CloseHandle(waiter);
    CloseHandle(self);
}

} // namespace
