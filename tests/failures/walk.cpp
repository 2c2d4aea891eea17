#include "failures/walk.h"

#include <sys/mman.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

#include "failures/allocation_faults.h"
#include "failures/call_errors.h"
#include "failures/forked.h"
#include "failures/judge.h"
#include "failures/session.h"
#include "phn_platform_test.h"
#include "support/usage.h"
#include "temporary_folder.h"

// LeakSanitizer's, where the program is built with it.
extern "C" [[gnu::weak]] int __lsan_do_recoverable_leak_check();

// AddressSanitizer's: who is aborted prints where it stands, and leaks are looked for when this program says so. Where
// memory was allocated is told for a case that is run alone: to keep it costs a fifth of the walk's time.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options()
{
    return std::getenv("PHN_WALK_ONLY")
               ? "handle_abort=1:leak_check_at_exit=0"
               : "handle_abort=1:leak_check_at_exit=0:malloc_context_size=1:detect_odr_violation=0";
}

namespace fs = std::filesystem;

namespace {

constexpr unsigned kWorkers = 20; // they wait more than they work
constexpr std::chrono::seconds kLongestCase(20);
constexpr std::chrono::milliseconds kLongestPause(30); // a third of the shortest time-out that ends a call
constexpr unsigned kMostStartups = 5;
constexpr char kSubject[] = "PHN_GetConnectionInfo"; // of a short session

// What is left of a session when the library is gone, beyond what was there before.
struct Remains
{
    int64_t allocations = 0;
    size_t descriptors = 0;
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
    std::atomic<unsigned> again;
    bool isUndecided[kWorkers]; // the worker's last case went wrong while the machine stood still
};

[[maybe_unused]] const bool isInMemory = access("/dev/shm", W_OK) == 0 && setenv("TMPDIR", "/dev/shm", 1) == 0;

Shared& shared =
    *static_cast<Shared*>(mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));

Remains CountRemains()
{
    return {allocation_faults::Living(), CountEntries("/proc/self/fd")};
}

Remains operator-(const Remains& now, const Remains& before)
{
    return {now.allocations - before.allocations, now.descriptors - before.descriptors};
}

// Whether the machine stands still, so that scaled time-outs pass: a thread sees by how much it is late.
class PauseWatch
{
public:
    bool HasStoodStill() const { return hasStoodStill_; }

private:
    void Watch(const std::stop_token& stop)
    {
        allocation_faults::SpareThisThread();
        for (auto last = std::chrono::steady_clock::now(); !stop.stop_requested();) {
            std::this_thread::sleep_for(kLongestPause / 3);
            const auto now = std::chrono::steady_clock::now();
            hasStoodStill_ = hasStoodStill_ || now - last > kLongestPause;
            last = now;
        }
    }

    std::atomic<bool> hasStoodStill_ = false;
    std::jthread thread_{[this](const std::stop_token& stop) { Watch(stop); }};
};

// A worker's place: a folder, in memory where there is one (no case may wait for a disk), and a lasting handset.
class Bench
{
public:
    Bench(Attachment attachment, unsigned number) : worker(number), folder_(attachment) {}

    const unsigned worker;

    SessionReport RunSession(const SessionPlan& plan) const { return ::RunSession(folder_, *handset_, plan); }
    // On USB a whole session, elsewhere a short one: the exports differ in nothing there.
    SessionReport RunSession(unsigned startups = 1) const
    {
        return RunSession({.subject = folder_.attachment == Attachment::Usb ? "" : kSubject, .startups = startups});
    }
    const HandsetProcess& Handset() const { return *handset_; }
    fs::path Errors() const { return folder_.root / "errors"; }
    void RenewHandset()
    {
        handset_.reset();
        handset_ = std::make_unique<HandsetProcess>(folder_.devices);
    }

private:
    const HostFolder folder_;
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

SessionReport RunFaulty(const Bench& bench, const Case& one)
{
    const auto arm = [&] { Arm(one); };
    const auto disarm = [&] { shared.struck += Disarm(one); };
    if (one.subject.empty()) {
        arm();
        SessionReport report = bench.RunSession(one.faults[0].count == kForEver ? 1 : kMostStartups);
        disarm();
        return report;
    }
    const auto before = [&] {
        if (!one.handset.empty())
            bench.Handset().Tell(one.handset);
        arm();
    };
    return bench.RunSession({one.subject, before, disarm});
}

bool IsCaseRight(const Bench& bench, const Case& one)
{
    allocation_faults::SpareThisThread();
    const PauseWatch pauses;
    const Remains before = CountRemains();
    bool isRight = true;
    {
        const SessionReport report = RunFaulty(bench, one);
        isRight = IsRight("with the failure", JudgeFaulty(report, shared.outputs, one), report);
    }
    const SessionReport report = bench.RunSession({.subject = kSubject, .startups = kMostStartups});
    Complaints wrong = JudgeClean(report, shared.outputs);
    JudgeRemains(CountRemains() - before, wrong);
    isRight = IsRight("behind it", wrong, report) && isRight;
    shared.isUndecided[bench.worker] = !isRight && pauses.HasStoodStill();
    return isRight;
}

bool NoteCalls(const Bench& bench)
{
    allocation_faults::SpareThisThread();
    const Remains before = CountRemains();
    {
        for (const CallErrors& one : kCallErrors)
            platform_test::FailCall(one.call, ERROR_SUCCESS, 0, kForEver);
        allocation_faults::Arm(UINT64_MAX, 0);
        const SessionReport report = bench.RunSession();
        shared.allocations = static_cast<unsigned>(allocation_faults::Made());
        for (size_t call = 0; call < kCallErrors.size(); ++call)
            shared.calls[call] = kForEver - platform_test::PendingFailures(kCallErrors[call].call);
        Disarm({});
        shared.outputs.Note(report);
        if (!IsRight("without a failure", JudgeClean(report, shared.outputs), report))
            return false;
    }
    const SessionReport report = bench.RunSession({.subject = kSubject, .startups = kMostStartups});
    shared.remains = CountRemains() - before;
    return IsRight("without a failure, again", JudgeClean(report, shared.outputs), report);
}

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

// A case that goes wrong while the machine stands still, so that scaled time-outs pass, is run again.
bool IsRightAtLast(Bench& bench, const Case& one)
{
    constexpr int kTries = 5;
    for (int tries = 0; tries < kTries; ++tries) {
        shared.isUndecided[bench.worker] = false;
        if (RunForked(bench.Errors(), kLongestCase, [&] { return IsCaseRight(bench, one); }))
            return true;
        bench.RenewHandset(); // which may have been left in the middle of something
        if (!shared.isUndecided[bench.worker])
            break;
        ++shared.again;
    }
    return false;
}

void Work(const std::vector<Case>& cases, Attachment attachment, unsigned number, const fs::path& results)
{
    Bench bench(attachment, number);
    std::ofstream stream(results);
    for (unsigned next; (next = shared.next++) < cases.size();) {
        if (!IsRightAtLast(bench, cases[next]))
            stream << ToString(cases[next]) << '\n' << FirstLines(bench.Errors()) << '\0';
    }
}

} // namespace

Census TakeCensus(Attachment attachment)
{
    const Bench bench(attachment, 0);
    if (!RunForked(bench.Errors(), kLongestCase, [&] { return NoteCalls(bench); }))
        throw std::runtime_error("a session without failures goes wrong:\n" + FirstLines(bench.Errors()));
    return {{shared.calls, shared.calls + kCallErrors.size()}, shared.allocations};
}

WalkResult Walk(std::vector<Case> cases, Attachment attachment)
{
    if (const char* const only = std::getenv("PHN_WALK_ONLY"))
        std::erase_if(cases, [only](const Case& one) { return !ToString(one).starts_with(only); });
    const auto start = std::chrono::steady_clock::now();
    const TemporaryFolder results;
    shared.next = 0;
    shared.struck = 0;
    shared.again = 0;
    std::vector<pid_t> workers;
    for (unsigned number = 0; number < kWorkers; ++number) {
        workers.push_back(fork());
        if (workers.back() == 0) {
            Work(cases, attachment, number, results.Path() / std::to_string(number));
            _exit(0);
        }
    }
    WalkResult result{.runs = cases.size()};
    for (unsigned number = 0; number < kWorkers; ++number) {
        int status = 0;
        if (waitpid(workers[number], &status, 0) < 0 || status)
            result.wrong.push_back("a worker has ended with status " + std::to_string(status));
        std::ifstream stream(results.Path() / std::to_string(number));
        for (std::string wrong; std::getline(stream, wrong, '\0');)
            result.wrong.push_back(wrong);
    }
    result.struck = shared.struck;
    result.again = shared.again;
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}
