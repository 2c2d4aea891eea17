// What a person looks for among the entries of a handset. Used by every command that finds some.
#pragma once

#include "phnctl/cli/command.h"

#include <string>
#include <vector>

namespace phnctl {

Argument WantedArgument(); // TEXT

inline constexpr const char* kFindDetails =
    "All of the words must be there, in any order; capitals and accents make no difference. A number is found in any\n"
    "spelling, also with or without a country's code. The exit status is 1 when nothing is found.\n";

class Wanted
{
public:
    // Throws Failure(kUsage) when there is nothing to look for.
    explicit Wanted(const Invocation& invocation);

    // Are all the words in these texts, or is the number?
    bool IsIn(const std::vector<std::string>& texts) const;

    std::string Shown() const; // for a terminal

private:
    std::string m_text;
    std::vector<std::string> m_words; // a number is one
    std::string m_digits;             // empty: it is no number
};

} // namespace phnctl
