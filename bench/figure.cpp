#include "figure.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <nlohmann/json.hpp>

namespace bench {

bool Judge(const Figure& figure)
{
    const char* const bound = figure.isLeast ? "at least" : "at most";
    const bool holds = figure.isLeast ? figure.value >= figure.limit : figure.value <= figure.limit;
    std::printf("%-58s %8.3f %-10s (%s %g)  %s\n", figure.what.c_str(), figure.value, figure.unit.c_str(), bound,
                figure.limit, holds ? "ok" : "MISSED");
    std::fflush(stdout);
    if (const char* path = std::getenv("PHNNRV_BENCH_FIGURES")) {
        nlohmann::ordered_json line{{"what", figure.what}, {"value", figure.value}, {"unit", figure.unit},
                                    {"bound", bound},      {"limit", figure.limit}, {"holds", holds}};
        if (!figure.reference.empty())
            line["times_us"] = {{figure.subject, figure.subjectTime}, {figure.reference, figure.referenceTime}};
        std::ofstream(path, std::ios::app) << line << "\n";
    }
    return holds;
}

} // namespace bench
