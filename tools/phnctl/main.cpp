// The program: one command per run. All failures end here.
#include "phnctl/cli/command_line.h"
#include "phnctl/cli/ending.h"
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/text/error_names.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/json.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

std::vector<Command> AllCommands()
{
    std::vector<Command> commands;
#define PHNCTL_ROW(noun) noun##Commands,
    for (auto* list : {PHNCTL_NOUNS(PHNCTL_ROW)})
        for (Command& command : list())
            commands.push_back(std::move(command));
#undef PHNCTL_ROW
    return commands;
}

int Run(const std::vector<std::string>& arguments)
{
    const std::vector<Command> commands = AllCommands();
    const ParsedLine line = ParseLine(commands, arguments);
    int status = kDone;
    if (line.command)
        status = line.command->run(line.invocation);
    else
        fmt::print("{}", line.text);
    FlushOutput();
    return status;
}

// What programs get instead of an answer.
Json ToJson(const std::exception& error)
{
    JsonObject members;
    if (const auto* refusal = dynamic_cast<const Refusal*>(&error)) {
        const ErrorText& text = refusal->Error();
        members.emplace_back("code", Json{std::int64_t{text.code}});
        members.emplace_back("name", Json{text.name.empty() ? ErrorOf(text.code).name : text.name});
        members.emplace_back("text", Json{text.meaning});
        if (!refusal->Doing().empty())
            members.emplace_back("while", Json{refusal->Doing()});
    } else {
        members.emplace_back("text", Json{std::string(error.what())});
    }
    JsonObject whole;
    whole.emplace_back("error", Json{std::move(members)});
    return {std::move(whole)};
}

// Standard output may be what has failed: a full disk must not hide the message that says so.
void Tell(const std::exception& error, const std::string& advice, bool asJson)
{
    fmt::print(stderr, "phnctl: {}\n{}{}", error.what(), advice, advice.empty() ? "" : "\n");
    if (asJson && !std::ferror(stdout))
        std::fputs((WriteJson(ToJson(error)) + '\n').c_str(), stdout);
}

int RunSafely(const std::vector<std::string>& arguments)
{
    const bool asJson = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
    try {
        host::PreferUtf8();
        EndOnInterrupt();
        return Run(arguments);
    } catch (const Failure& failure) {
        Tell(failure, failure.Advice(), asJson);
        return failure.ExitStatus();
    } catch (const std::exception& error) {
        Tell(error, "", asJson);
        return kRefused;
    }
}

} // namespace

} // namespace phnctl

int main(int argc, char** argv)
{
    phnctl::EndNow(phnctl::RunSafely(host::Arguments(argc, argv)));
}
