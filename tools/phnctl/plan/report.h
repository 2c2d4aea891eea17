// A plan as people and programs read it, before it is applied and after. Used wherever a plan is made.
#pragma once

#include "phnctl/plan/plan.h"

#include <string>

namespace phnctl {

// One paragraph for each entry that is written, deleted or fails, and sentences with the counts. `width` is the
// terminal's: then new entries are shown with their values, and no line is longer. 0 for no terminal.
std::string PlanText(const EntryForm& form, const Plan& plan, unsigned width);

// Those sentences alone.
std::string SummaryText(const EntryForm& form, const Plan& plan);

Json PlanJson(const EntryForm& form, const Plan& plan);

} // namespace phnctl
