#include "phnctl/program.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iomanip>
#include <spawn.h>
#include <sstream>
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
    std::ofstream(m_streams.Path() / "in") << input;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, (m_streams.Path() / "in").c_str(), O_RDONLY, 0);
    constexpr int kWrite = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, 1, m_output.c_str(), kWrite, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, (m_streams.Path() / "err").c_str(), kWrite, 0600);

    std::vector<std::string> arguments{PHNCTL};
    std::istringstream stream(words);
    for (std::string word; stream >> std::quoted(word);)
        arguments.push_back(word == "_" ? "" : word);
    std::vector<std::string> variables;
    for (const auto& [name, value] : m_environment)
        variables.push_back(name + "=" + value);
    pid_t process = 0;
    const int error =
        posix_spawn(&process, PHNCTL, &actions, nullptr, Pointers(arguments).data(), Pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error)
        throw std::system_error(error, std::generic_category(), PHNCTL);
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
