// ./dev soak: hours of everything at once, and one thing thousands of times, through the exports. Exit status 1: a
// finding.
#include <CLI/CLI.hpp>

#include <malloc.h>

#include <cstdio>

#include "cycles.h"
#include "storm.h"
#include "surroundings.h"

int main(int argc, char** argv)
{
    CLI::App app("Calls everything at random against a handset that misbehaves, and reports what was off");
    double minutes = 1;
    std::uint32_t seed = 1;
    unsigned unplugs = 0;
    unsigned loads = 0;
    app.add_option("minutes", minutes, "how long (default: 1)");
    app.add_option("--seed", seed, "gives the choices of each thread (default: 1)");
    app.add_option("--unplugs", unplugs, "instead, so many unplugs at a random byte of a reply");
    app.add_option("--loads", loads, "instead, so many loads and unloads of the library");
    CLI11_PARSE(app, argc, argv);
    mallopt(M_ARENA_MAX, 1); // what is counted as memory is that of the first one
    try {
        const bool isStorm = !unplugs && !loads;
        const soak::Surroundings surroundings(unplugs ? 1 : soak::kScale, isStorm ? soak::kAllLines : 0);
        const bool isGood = unplugs ? soak::RunUnplugs(surroundings, unplugs, seed)
                            : loads ? soak::RunLoads(surroundings, loads)
                                    : soak::RunStorm(surroundings, minutes, seed);
        std::printf("%s\n", isGood ? "nothing was off" : "something was off");
        return isGood ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "soak: %s\n", failure.what());
        return 1;
    }
}
