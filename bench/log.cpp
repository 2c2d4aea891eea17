// A filtered log line, and a written one beside a bare write() of the same bytes.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "log/log.h"
#include "log/log_file.h"
#include "ratio.h"

namespace {

constexpr CLogSource Log{LOG_CPORT};

void Filtered(benchmark::State& state)
{
    for (auto _ : state)
        Log.Comment("GetBatteryInfo - ExecCmd failed with dwErrSts = %d(0x%X).", 5, 5);
}

void Written(benchmark::State& state)
{
    for (auto _ : state)
        Log.Error("GetBatteryInfo - ExecCmd failed with dwErrSts = %d(0x%X).", 5, 5);
}

void BareWrite(benchmark::State& state)
{
    const std::string line =
        "07/03/09 14:05:00\tCPort\tError\tGetBatteryInfo - ExecCmd failed with dwErrSts = 5(0x5).\r\n";
    const int file = open("bare.log", O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    for (auto _ : state)
        if (write(file, line.data(), line.size()) < 0)
            return state.SkipWithError("write");
    close(file);
}

} // namespace

int main(int argc, char** argv)
{
    std::string folder = std::filesystem::temp_directory_path() / "phn-bench-XXXXXX";
    if (!mkdtemp(folder.data()))
        return 1;
    std::filesystem::current_path(folder);
    std::ofstream("log.reg") << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                                "\"Logging Level\"=dword:000fff04\n";
    setenv("PHNNRV_REGISTRY", (folder + "/log.reg").c_str(), 1);
    CreateLogLock();

    benchmark::RegisterBenchmark("log_filtered", Filtered)->Repetitions(5);
    benchmark::RegisterBenchmark("log_written", Written)->Repetitions(5);
    benchmark::RegisterBenchmark("log_bare_write", BareWrite)->Repetitions(5);
    using bench::Bound;
    const int status = bench::RunBenchmarks(
        argc, argv,
        {
            {"filtered line", "log_filtered", "", Bound::AtMost, 0.6},
            {"written line beside a bare write()", "log_written", "log_bare_write", Bound::AtMost, 1.5},
        });
    CloseLog();
    std::filesystem::current_path("/");
    std::filesystem::remove_all(folder);
    return status;
}
