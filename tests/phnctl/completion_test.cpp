// What a shell is told for the last of some words, empty where it is "_".
#include "phnctl/program.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

std::string CandidatesFor(const std::string& words)
{
    std::istringstream lines(Program().Run("__complete " + words).out);
    std::string candidates;
    for (std::string line; std::getline(lines, line);)
        candidates += (candidates.empty() ? "" : " ") + line.substr(0, line.find('\t'));
    return candidates;
}

TEST(Completion, OffersWhatMayStandThere)
{
    const std::pair<const char*, const char*> cases[] = {
        {"parameters _", "get set"},
        {"--simulator --wait 5 --wait=5 help calls _", "list count export clear"},
        {"messages get --", "--help --pdu --simulator --json --wait --library --labels --log --slow-reads --version"},
        {"lock _", "on off"},
        {"messages send --priority _", "0 1 2 3"},
        {"info --log _", "off error comment all"},
        {"info --log=e", "--log=off --log=error --log=comment --log=all"},
        {"contacts put _", ":files"},
        {"contacts put card.vcf _", ""},
        {"contacts import a.vcf b.vcf _", ":files"},
        {"backup _", ":folders"},
    };
    for (const auto& [words, candidates] : cases)
        EXPECT_EQ(CandidatesFor(words), candidates) << words;
}

} // namespace
