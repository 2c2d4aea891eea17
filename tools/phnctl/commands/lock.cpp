// phnctl lock, phnctl lock-code: locks the handset, unlocks it, and changes its lock code.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

namespace phnctl {

namespace {

constexpr std::size_t kCodeLength = 4;

// A code of the command line, or one that is typed unseen: arguments are visible to every user of the machine.
std::string LockCode(const std::optional<std::string>& given, const char* prompt)
{
    const auto text = given ? given : host::ReadSecret(prompt);
    if (!text)
        throw Failure(kUsage, "no lock code was given, neither as an argument nor on standard input");
    std::string code = ToHandset(*text);
    if (code.size() != kCodeLength)
        throw Failure(kUsage, "a lock code has exactly 4 characters");
    return code;
}

int Lock(const Invocation& invocation)
{
    const std::string state = *invocation.Value("STATE");
    const std::string code = LockCode(invocation.Value("CODE"), "Lock code: ");
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const bool on = state == "on";
        handset.Check(handset.Api().SetLock(on, code.c_str()), on ? "locking the handset" : "unlocking the handset");
        PrintDone(invocation.options, on ? "The handset is locked." : "The handset is unlocked.",
                  {{{"", "", {{"lock", "Lock", state}}}}});
    });
}

int ChangeCode(const Invocation& invocation)
{
    const std::string before = LockCode(invocation.Value("OLD"), "Present lock code: ");
    const std::string after = LockCode(invocation.Value("NEW"), "New lock code: ");
    return WithHandset(invocation.options, [&](const Handset& handset) {
        handset.Check(handset.Api().ChangeLockCode(before.c_str(), after.c_str()), "changing the lock code");
        PrintDone(invocation.options, "The lock code is changed.",
                  {{{"", "", {{"lockCode", "Lock code", "changed"}}}}});
    });
}

} // namespace

std::vector<Command> LockCommands()
{
    return {{"lock",
             "Lock or unlock the handset",
             "Without CODE it is asked for and not shown, which keeps it out of the shell's history; from\n"
             "a pipe it is the next line.\n\n"
             "Examples:\n"
             "  phnctl lock on\n"
             "  phnctl lock off 0000\n",
             {{"STATE", "The lock's new state", Count::One, {"on", "off"}},
              {"CODE", "The present lock code, 4 characters", Count::Optional, {}}},
             Lock},
            {"lock-code",
             "Change the lock code",
             "Codes that are not given are asked for and not shown; from a pipe they are the next lines.\n\n"
             "Examples:\n"
             "  phnctl lock-code\n"
             "  phnctl lock-code 0000 4711\n",
             {{"OLD", "The present lock code, 4 characters", Count::Optional, {}},
              {"NEW", "The new lock code, 4 characters", Count::Optional, {}}},
             ChangeCode}};
}

} // namespace phnctl
