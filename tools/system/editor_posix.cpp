#include "system/editor.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace host {

namespace {

std::string EditorCommand()
{
    for (const char* variable : {"VISUAL", "EDITOR"})
        if (const char* const command = std::getenv(variable); command && *command)
            return command;
    return "vi";
}

} // namespace

std::filesystem::path MakeEditingFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "phnctl-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::system_error(errno, std::generic_category(), pattern);
    return pattern;
}

// The variables hold a command with its options, as a shell reads it. What this process blocks, the editor must not.
bool Edit(const std::filesystem::path& file)
{
    std::string shell = "sh", option = "-c", script = EditorCommand() + " \"$@\"", path = file.string();
    char* const arguments[] = {shell.data(), option.data(), script.data(), shell.data(), path.data(), nullptr};
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t process = 0;
    const int error = posix_spawn(&process, "/bin/sh", nullptr, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    int status = 0;
    while (error == 0 && waitpid(process, &status, 0) < 0)
        if (errno != EINTR)
            return false;
    return error == 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace host
