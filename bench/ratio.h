// Benchmarks that are judged by a ratio. A program registers its benchmarks with Google Benchmark as usual, lists which
// of them stand beside which reference, and calls RunBenchmarks: after the usual table it prints each ratio of the
// median repetitions beside its bound, and the exit status is 1 if one is missed, 2 if a benchmark failed. Only ratios
// of one run mean anything: the machines are noisy.
#pragma once

#include <string>
#include <vector>

namespace bench {

enum class Bound
{
    AtMost,
    AtMostAbove, // the subject's time without the reference's
    AtLeast,
};

// The value is `subject` divided by `reference` for AtMost and the other way round for AtLeast ("times as fast").
// Without a reference, and for AtMostAbove, it is a time in microseconds.
struct Ratio
{
    std::string what;
    std::string subject;
    std::string reference;
    Bound bound;
    double limit;
};

// For a program of which two threads take turns, called before the second one starts: all of them, and the programs
// that they start, stay on the processor where the caller is. What is compared then is the work of both sides, and not
// where the system puts them. The other processors are kept busy to the program's end: the system would have an idle
// one carry a pseudo terminal's bytes across, and waking it can take longer than the exchange that is measured.
void StayOnOneProcessor();

enum class Order
{
    OneByOne,
    Mixed, // the repetitions of all of them at random, so that what disturbs the machine for a while disturbs each
           // alike
};

int RunBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios, Order order = Order::OneByOne);

} // namespace bench
