#include "failures/walk.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "failures/allocation_faults.h"
#include "failures/call_errors.h"
#include "failures/forked.h"
#include "failures/judge.h"
#include "failures/session.h"
#include "phn_platform_test.h"
#include "temporary_folder.h"

// LeakSanitizer's, where the program is built with it.
extern "C" [[gnu::weak]] int __lsan_do_recoverable_leak_check();

// AddressSanitizer's: who is aborted prints where it stands, and leaks are looked for when this program says so.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options()
{
    return "handle_abort=1:leak_check_at_exit=0";
}

namespace fs = std::filesystem;

namespace {

constexpr unsigned kWorkers = 8; // they wait more than they work
constexpr std::chrono::seconds kLongestCase(20);

// What is left of a session when the library is gone, beyond what was there before.
struct Remains
{
    int64_t allocations = 0;
    unsigned descriptors = 0;
};

// All processes share it.
struct Shared
{
    ExpectedOutputs outputs;
    Remains remains;
    unsigned calls[100];
    unsigned allocations;
    std::atomic<unsigned> next;
    std::atomic<unsigned> struck;
};

Shared& shared =
    *static_cast<Shared*>(mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));

Remains CountRemains()
{
    constexpr int kMost = 256;
    Remains remains{allocation_faults::Living(), 0};
    for (int descriptor = 0; descriptor < kMost; ++descriptor)
        remains.descriptors += fcntl(descriptor, F_GETFD) >= 0;
    return remains;
}

Remains operator-(const Remains& now, const Remains& before)
{
    return {now.allocations - before.allocations, now.descriptors - before.descriptors};
}

// A worker's place: a folder, and a handset that outlasts the cases.
class Bench
{
public:
    SessionReport RunSession(Length length) const { return ::RunSession(folder_, *handset_, length); }
    fs::path Errors() const { return temporary_.Path() / "errors"; }
    void RenewHandset()
    {
        handset_.reset();
        handset_ = std::make_unique<HandsetProcess>(folder_.devices);
    }

private:
    const TemporaryFolder temporary_;
    const HostFolder folder_{temporary_.Path()};
    std::unique_ptr<HandsetProcess> handset_ = std::make_unique<HandsetProcess>(folder_.devices);
};

// Prints what is wrong; true if nothing is.
bool IsRight(const char* session, const Complaints& wrong, const SessionReport& report)
{
    for (const std::string& complaint : wrong)
        std::fprintf(stderr, "%s: %s\n", session, complaint.c_str());
    if (!wrong.empty() && std::getenv("PHN_WALK_LOG"))
        std::fputs(report.log.c_str(), stderr);
    return wrong.empty();
}

// A leak is looked for when more allocations are left than without failures: that takes long.
void JudgeRemains(const Remains& remains, Complaints& wrong)
{
    if (remains.descriptors != shared.remains.descriptors)
        wrong.push_back(std::to_string(remains.descriptors) + " descriptors are left instead of " +
                        std::to_string(shared.remains.descriptors));
    if (remains.allocations != shared.remains.allocations && __lsan_do_recoverable_leak_check &&
        __lsan_do_recoverable_leak_check())
        wrong.push_back("there is a leak");
}

// ---- A case

bool IsCaseRight(const Bench& bench, const Fault& fault)
{
    allocation_faults::SpareThisThread();
    const Remains before = CountRemains();
    bool isRight = true;
    {
        Arm(fault);
        const SessionReport report = bench.RunSession(Length::Whole);
        shared.struck += Disarm(fault);
        isRight = IsRight("with the failure", JudgeFaulty(report, shared.outputs, fault), report);
    }
    const SessionReport report = bench.RunSession(Length::Short);
    Complaints wrong = JudgeClean(report, shared.outputs);
    JudgeRemains(CountRemains() - before, wrong);
    return IsRight("behind it", wrong, report) && isRight;
}

bool NoteCalls(const Bench& bench)
{
    allocation_faults::SpareThisThread();
    const auto errors = AllCallErrors();
    const Remains before = CountRemains();
    {
        for (const CallErrors& one : errors)
            platform_test::FailCall(one.call, ERROR_SUCCESS, 0, kForEver);
        allocation_faults::Arm(UINT64_MAX, 0);
        const SessionReport report = bench.RunSession(Length::Whole);
        shared.allocations = static_cast<unsigned>(allocation_faults::Made());
        for (size_t call = 0; call < errors.size(); ++call)
            shared.calls[call] = kForEver - platform_test::PendingFailures(errors[call].call);
        Disarm({});
        shared.outputs.Note(report);
        if (!IsRight("without a failure", JudgeClean(report, shared.outputs), report))
            return false;
    }
    const SessionReport report = bench.RunSession(Length::Short);
    shared.remains = CountRemains() - before;
    return IsRight("without a failure, again", JudgeClean(report, shared.outputs), report);
}

// ---- Workers

std::string FirstLines(const fs::path& file)
{
    constexpr int kMost = 40;
    std::ifstream stream(file);
    std::string text;
    std::string line;
    for (int count = 0; count < kMost && std::getline(stream, line); ++count)
        text += "    " + line + '\n';
    return text;
}

void Work(const std::vector<Fault>& faults, const fs::path& results)
{
    Bench bench;
    std::ofstream stream(results);
    for (unsigned number; (number = shared.next++) < faults.size();) {
        if (RunForked(bench.Errors(), kLongestCase, [&] { return IsCaseRight(bench, faults[number]); }))
            continue;
        stream << ToString(faults[number]) << '\n' << FirstLines(bench.Errors()) << '\0';
        bench.RenewHandset(); // which may have been left in the middle of something
    }
}

std::vector<std::string> ReadResults(const fs::path& results)
{
    std::vector<std::string> all;
    std::ifstream stream(results);
    for (std::string one; std::getline(stream, one, '\0');)
        all.push_back(one);
    return all;
}

} // namespace

Census TakeCensus()
{
    const Bench bench;
    if (!RunForked(bench.Errors(), kLongestCase, [&] { return NoteCalls(bench); }))
        throw std::runtime_error("a session without failures goes wrong:\n" + FirstLines(bench.Errors()));
    return {{shared.calls, shared.calls + AllCallErrors().size()}, shared.allocations};
}

WalkResult Walk(std::vector<Fault> faults)
{
    if (const char* const only = std::getenv("PHN_WALK_ONLY"))
        std::erase_if(faults, [only](const Fault& fault) { return !ToString(fault).starts_with(only); });
    const auto start = std::chrono::steady_clock::now();
    const TemporaryFolder results;
    shared.next = 0;
    shared.struck = 0;
    std::vector<pid_t> workers;
    for (unsigned number = 0; number < kWorkers; ++number) {
        workers.push_back(fork());
        if (workers.back() == 0) {
            Work(faults, results.Path() / std::to_string(number));
            _exit(0);
        }
    }
    WalkResult result{.runs = faults.size()};
    for (unsigned number = 0; number < kWorkers; ++number) {
        int status = 0;
        if (waitpid(workers[number], &status, 0) < 0 || status)
            result.wrong.push_back("a worker has ended with status " + std::to_string(status));
        std::ranges::copy(ReadResults(results.Path() / std::to_string(number)), std::back_inserter(result.wrong));
    }
    result.struck = shared.struck;
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}
