#include "phnctl/commands/backup/restoration.h"

#include "phnctl/cli/ending.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/plan/report.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

template <typename Amount>
std::string Amounts(const std::vector<Part>& parts, Amount amountOf)
{
    std::vector<std::string> amounts;
    for (const Part& part : parts)
        if (const std::size_t count = part.restoration ? amountOf(part.restoration->plan) : 0)
            amounts.push_back(Counted(count, part.restoration->form->One(), part.restoration->form->Many()));
    return fmt::format("{}", fmt::join(amounts, " and "));
}

void Show(const BackupSection& section, const std::optional<Restoration>& restoration)
{
    fmt::print("{}\n", section.File());
    if (!restoration) {
        fmt::print("No {} can be put back; they stay in the backup.\n", section.Name());
        return;
    }
    const auto& [form, plan, apply, others, remark] = *restoration;
    fmt::print("{}{}{}", PlanText(*form, plan, host::TerminalWidth(stdout)), remark, remark.empty() ? "" : "\n");
    if (others != 0)
        fmt::print("{} of the handset {} not in the backup and {}; {} deletes {}.\n",
                   Counted(others, form->One(), form->Many()), others == 1 ? "is" : "are",
                   others == 1 ? "stays" : "stay", kDeleteOthers, others == 1 ? "it" : "them");
}

Json ToJson(const Part& part)
{
    const std::size_t others = part.restoration ? part.restoration->others : 0;
    JsonObject object{{"name", {part.section->Name()}},
                      {"file", {part.section->File()}},
                      {"problem", {part.problem}},
                      {"others", {static_cast<std::int64_t>(others)}}};
    if (part.restoration)
        object.emplace_back("plan", PlanJson(*part.restoration->form, part.restoration->plan));
    return {std::move(object)};
}

void Tell(Part& part, const Failure& failure)
{
    part.problem = failure.what();
    fmt::print(stderr, "phnctl: {}: {}\n", part.section->Name(), part.problem);
}

int CarryOut(const Invocation& invocation, Part& part, RunRecord& record)
{
    Restoration& restoration = *part.restoration;
    try {
        return CarryOut(invocation, restoration.plan,
                        [&](bool isStrict) { restoration.apply(restoration.plan, isStrict, record); });
    } catch (const Failure& failure) {
        Tell(part, failure);
        return kRefused;
    }
}

} // namespace

bool Prepare(std::vector<Part>& parts,
             const std::function<std::optional<Restoration>(const BackupSection& section)>& prepare)
{
    bool isFine = true;
    for (Part& part : parts) {
        try {
            part.restoration = prepare(*part.section);
        } catch (const Failure& failure) {
            isFine = false;
            Tell(part, failure);
        }
    }
    return isFine;
}

std::string AmountToWrite(const std::vector<Part>& parts)
{
    return Amounts(parts, [](const Plan& plan) { return plan.Count(Action::Add) + plan.Count(Action::Change); });
}

std::string AmountToDelete(const std::vector<Part>& parts)
{
    return Amounts(parts, [](const Plan& plan) { return plan.deletions.size(); });
}

int PutBack(const Invocation& invocation, std::vector<Part>& parts, RunRecord& record)
{
    int status = kDone;
    JsonList results;
    for (Part& part : parts) {
        const bool isReached = status != kInterrupted;
        if (part.restoration && isReached)
            status = std::max(status, CarryOut(invocation, part, record)); // an interrupt is the largest
        if (invocation.options.json)
            results.push_back(ToJson(part));
        else if (part.problem.empty() && isReached)
            Show(*part.section, part.restoration);
    }
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson({JsonObject{{"sections", {std::move(results)}}}}));
    if (status != kInterrupted)
        record.Over();
    return status;
}

} // namespace phnctl
