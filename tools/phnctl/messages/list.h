// The messages of a handset, read by the library's listing: what it stores, box by box, and how it is shown. Used by
// the messages commands and by backup and restore.
#pragma once

#include "phnctl/handset/handset.h"
#include "phnctl/handset/labels.h"
#include "phnctl/messages/pdu.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

struct StoredMessage
{
    std::int32_t box = 0;
    std::uint16_t index = 0;
    PduBytes bytes;
    Pdu pdu;
};

// All boxes, or the one that is given.
std::vector<std::int32_t> Boxes(std::optional<std::int32_t> only);

// "Inbox (0)", where the label file of the model names it.
std::string BoxName(const Labels& labels, std::int32_t box);

// Box after box, in the handset's order. Throws Refusal.
std::vector<StoredMessage> ReadMessages(const Handset& handset, const std::vector<std::int32_t>& boxes);

// Those of these indexes, in their order. Throws Refusal when one is not there.
std::vector<StoredMessage> FindMessages(const Handset& handset, const std::vector<std::uint16_t>& indexes);

// Gives a message to the handset, to be sent or saved, and returns its index. Throws Refusal.
std::uint16_t PutMessage(const Handset& handset, decltype(&PHN_SendMessage) call, PduBytes pdu,
                         const std::string& doing);

// Throws Refusal.
void DeleteMessage(const Handset& handset, std::uint16_t index);

// How many messages a box holds. Throws Refusal: a count of 0 alone does not tell an empty box from a failure.
std::uint32_t CountMessages(const Handset& handset, std::int32_t box);

// For people, as `list` shows them; `width` as in TableText.
std::string MessagesTable(const std::vector<StoredMessage>& messages, const Labels& labels, unsigned width);

// As CSV, a line for each.
std::string MessagesSheet(const std::vector<StoredMessage>& messages, const Labels& labels);

// {"messages":[...]}: as `list --json` answers, and as copies are kept.
std::string MessagesJson(const std::vector<StoredMessage>& messages);

// The members that a PDU's content has, those that are missing as null.
JsonObject ContentJson(const PduContent& content);

} // namespace phnctl
