#include "simulator/phnsim/end_request.h"

#include <csignal>
#include <thread>
#include <utility>

#include <sys/stat.h>

namespace simulator {
namespace {

sigset_t EndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, number);
    return signals;
}

class SignalThread
{
public:
    explicit SignalThread(std::function<void()> told) : told_(std::move(told)) {}
    ~SignalThread()
    {
        thread_.request_stop();
        pthread_kill(thread_.native_handle(), SIGHUP); // any that it waits for
    }
    SignalThread(const SignalThread&) = delete;
    SignalThread& operator=(const SignalThread&) = delete;

private:
    const std::function<void()> told_;
    std::jthread thread_{[this](const std::stop_token& stop) {
        const sigset_t signals = EndSignals();
        int number = 0;
        while (sigwait(&signals, &number) == 0 && !stop.stop_requested())
            told_();
    }};
};

} // namespace

void PrepareProcess()
{
    umask(S_IRWXG | S_IRWXO);      // a recording may be of a real handset
    std::signal(SIGPIPE, SIG_IGN); // a TCP peer or a reader of the trace that goes is no reason to die
    std::signal(SIGTTIN,
                SIG_IGN); // in the background of a terminal, standard input has ended instead of phnsim stopping
    // Blocked in every thread, so that all leave them to the one that waits for them.
    const sigset_t signals = EndSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

std::shared_ptr<void> WatchEndRequests(std::function<void()> told)
{
    return std::make_shared<SignalThread>(std::move(told));
}

} // namespace simulator
