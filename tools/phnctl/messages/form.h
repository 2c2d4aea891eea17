// Messages as entries of a plan: what of a message comes back by saving it anew. Used by restore.
#pragma once

#include "phnctl/messages/list.h"
#include "phnctl/messages/pdu.h"
#include "phnctl/plan/entry_form.h"
#include "phnctl/plan/losses.h"

#include <string>
#include <vector>

namespace phnctl {

const EntryForm& MessageForm();

Entry MessageEntry(const PduContent& content);

// The PDU that saves such a message. Throws Failure(kUsage) that says what cannot be carried.
PduBytes SavingPdu(const Entry& message);

Losses LossesOf(const std::vector<StoredMessage>& messages);

// The messages of a file that MessagesJson has written. Throws std::runtime_error when it is none.
// Nothing: a PDU can carry it.
std::optional<Note> WhyNotWritable(const Entry& message);

std::vector<Candidate> MessagesOfFile(const std::string& file, const std::string& text);

} // namespace phnctl
