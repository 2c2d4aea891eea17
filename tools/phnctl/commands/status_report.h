// The handset's live status as sections of a report, one exchange each. Used by status, which shows them once, and by
// watch, which follows them.
#pragma once

#include "phnctl/cli/report.h"
#include "phnctl/handset/handset.h"
#include "phnctl/handset/labels.h"

namespace phnctl {

// Each throws Refusal when the handset does not answer.
Section ReadBattery(const Handset& handset, const Labels& labels);
Section ReadNetwork(const Handset& handset, const Labels& labels);
// With the text of the reason for which the last call ended.
Section ReadConnection(const Handset& handset, const Labels& labels);
// The number of messages in each box, 0 also when the handset does not tell.
Section ReadMessageCounts(const Handset& handset, const Labels& labels);

} // namespace phnctl
