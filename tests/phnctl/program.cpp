#include "phnctl/program.h"

#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>

namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

void Expect(const Outcome& outcome, int status, const std::vector<std::string>& says)
{
    const std::string said = outcome.out + outcome.err;
    EXPECT_EQ(outcome.status, status) << said;
    for (const std::string& part : says)
        EXPECT_TRUE(Has(said, part)) << part << "\n---\n" << said;
}

Program::Program()
{
    // Nothing of the machine that runs the tests shows through. The waits for a handset are short.
    m_environment = {{"PATH", "/usr/bin:/bin"},
                     {"LC_ALL", "C.UTF-8"},
                     {"TMPDIR", m_temporary.Path().string()},
                     {"PHNNRV_DEVICES", "/nonexistent"},
                     {"PHNNRV_REGISTRY", "/nonexistent"},
                     {"PHNNRV_TIME_SCALE", "0.2"}};
    if (const char* const profile = std::getenv("LLVM_PROFILE_FILE")) // ./dev coverage
        Set("LLVM_PROFILE_FILE", profile);
}

pid_t Program::Start(const std::string& words, const std::string& input)
{
    const std::string in = m_streams.Path() / "in", err = m_streams.Path() / "err";
    std::ofstream(in) << input;
    std::vector<std::string> arguments{"sh", "-c",
                                       "exec " PHNCTL " " + words + " <" + in + " >" + m_output + " 2>" + err};
    std::vector<std::string> variables;
    for (const auto& [name, value] : m_environment)
        variables.push_back(name + "=" + value);
    pid_t process = 0;
    const int error =
        posix_spawn(&process, "/bin/sh", nullptr, nullptr, Pointers(arguments).data(), Pointers(variables).data());
    if (error)
        throw std::system_error(error, std::generic_category(), "sh");
    return process;
}

Outcome Program::Finish(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR)
        continue;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status), ReadAll(m_streams.Path() / "out"),
            ReadAll(m_streams.Path() / "err")};
}
