// What is wrong with a session, by what one without failures was like.
#pragma once

#include <string>
#include <vector>

#include "failures/fault.h"
#include "failures/session.h"

using Complaints = std::vector<std::string>;

// What each export writes to the host's memory when it succeeds. Lies in memory that processes share.
struct ExpectedOutputs
{
    struct
    {
        char name[40];
        size_t hash;
    } exports[60];

    void Note(const SessionReport& report);
};

// Every call succeeds, with the same output, and what is to be told is told.
Complaints JudgeClean(const SessionReport& report, const ExpectedOutputs& expected);

// Each call succeeds with the same output, or has a code documented for this and an Error line of its own, in time.
Complaints JudgeFaulty(const SessionReport& report, const ExpectedOutputs& expected, const Case& one);
