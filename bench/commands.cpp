// What a person waits for: whole commands of phnctl, from their start to their end, the median of several runs. Of the
// one that reads a store, what it takes beyond its exchanges, from the first request to the last reply.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "figure.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr unsigned kContacts = 44;
constexpr int kRuns = 7;

// When each request came in and each reply went out, on the handset's own thread.
std::vector<Clock::time_point> exchanged;

// Of one run; below zero when the command failed.
double Whole(const std::string& arguments)
{
    const std::string command = PHNCTL " " + arguments + " > /dev/null 2>&1";
    const auto start = Clock::now();
    const int status = std::system(command.c_str());
    return status == 0 ? Milliseconds(Clock::now() - start).count() : -1;
}

double BeyondExchanges(const std::string& arguments)
{
    exchanged.clear();
    const double whole = Whole(arguments);
    return whole < 0 || exchanged.size() < 2 * kContacts
               ? -1
               : whole - Milliseconds(exchanged.back() - exchanged.front()).count();
}

bool Judge(const char* what, double limit, double (*measure)(const std::string&), const char* arguments)
{
    std::vector<double> times;
    for (int run = 0; run < kRuns; ++run)
        times.push_back(measure(arguments));
    std::ranges::sort(times);
    if (times.front() < 0) {
        std::fprintf(stderr, "bench_commands: phnctl %s failed\n", arguments);
        return false;
    }
    return bench::Judge({.what = what, .value = times[kRuns / 2], .unit = "ms", .limit = limit});
}

simulator::Phone PhoneWithContacts()
{
    simulator::Phone phone = simulator::DefaultPhone();
    const simulator::Contact contact = phone.contacts.begin()->second;
    phone.contacts.clear();
    for (unsigned id = 0; id < kContacts; ++id)
        phone.contacts[id] = contact;
    return phone;
}

} // namespace

int main()
{
    bool areKept = Judge("phnctl error 1025", 20, Whole, "error 1025");
    areKept &= Judge("phnctl --simulator info", 350, Whole, "--simulator info");

    const simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (devices.Path() / "none.reg").c_str(), 1);
    simulator::Simulator handset(devices.Path(), simulator::UsbInterfaceName("0001"), simulator::PortKind::Diagnostic,
                                 PhoneWithContacts());
    handset.Control().SetTrace([](std::string_view line) {
        if (line.starts_with("< ") || line.starts_with("> "))
            exchanged.push_back(Clock::now());
    });
    handset.Start();
    areKept &= Judge("phnctl contacts list of 44, beyond its exchanges", 100, BeyondExchanges, "contacts list");
    areKept &= Judge("the same with reads that end by silence", 100, BeyondExchanges, "--slow-reads contacts list");
    return areKept ? 0 : 1;
}
