// The four stores through their commands: what is stored comes back, and what a handset refuses is refused.
#include "simulator/command.h"
#include "simulator/host_side.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

using namespace simulator;

Bytes ContactRecord(std::uint32_t id, const std::string& name, const std::string& number, std::uint32_t type = 0)
{
    FieldWriter record = host::Record(36);
    record.U32("id", id);
    record.U32("group", 2);
    record.U32("picture as written", 4);
    record.Zeros(4);
    record.U32("ringer", 255);
    record.Text("text", "", 40);
    record.Text("first name", name, 36);
    record.Text("last name", "Berg", 36);
    record.Zeros(216);
    record.U32("entries", 1);
    record.U32("default", 1);
    record.U32("type", type);
    record.Text("value", number, 52);
    record.U32("speed dial", 9);
    return record.Written();
}

TEST(SimulatorStores, KeepContactsUnderIdsOfTheHandsetsChoice)
{
    Phone phone = DefaultPhone();
    phone.contacts.clear();
    phone.limits = {.contacts = 10, .numberLength = 20, .emailLength = 40};
    Handset handset(phone);
    host::Asker asker(handset);
    // Id 7 is never given out, so a new contact there moves on; nine ids fill the store.
    const std::tuple<std::uint32_t, std::uint32_t, std::uint32_t> cases[] = {
        {0, kSuccess, 0},   {7, kSuccess, 8}, {8, kSuccess, 8},  {7, kSuccess, 9}, {7, kSuccess, 1},
        {2, kSuccess, 2},   {3, kSuccess, 3}, {4, kSuccess, 4},  {5, kSuccess, 5}, {6, kSuccess, 6},
        {7, kStoreFull, 0}, {6, kSuccess, 6}, {10, kBadIndex, 0}};
    for (const auto& [wanted, result, stored] : cases) {
        const host::Reply reply = asker.Ask(ContactRecord(wanted, "Anna", "555"));
        EXPECT_EQ(reply.result, result) << wanted;
        EXPECT_EQ(host::NumberAt(reply.rest, 0), stored) << wanted;
    }
    EXPECT_EQ(asker.Ask(ContactRecord(0, "Anna", std::string(21, '5'))).result, kDoesNotFit);
    EXPECT_EQ(asker.Ask(ContactRecord(0, "Anna", std::string(40, '5'), 5)).result, kSuccess);
    EXPECT_EQ(asker.Ask(ContactRecord(0, "Anna", "5", 7)).result, kDoesNotFit);
}

TEST(SimulatorStores, RefuseWhatIsNotThere)
{
    Handset handset;
    host::Asker asker(handset);
    const std::tuple<std::uint32_t, std::uint32_t, std::uint32_t> cases[] = {
        {35, 999, kBadIndex}, {37, 7, kAbsent},  {37, 6, kSuccess},  {37, 999, kBadIndex}, {40, 99, kAbsent},
        {30, 100, kBadIndex}, {32, 90, kAbsent}, {20, 999, kAbsent}, {15, 5, kBadIndex},   {25, 5, kBadIndex},
    };
    for (const auto& [command, index, result] : cases)
        EXPECT_EQ(asker.Ask(command, {index}).result, result) << command;
    EXPECT_EQ(asker.Ask(22, {999, 1}).result, kAbsent);
    EXPECT_EQ(host::NumberAt(asker.Ask(35, {6}).rest, 4), 0u);
    EXPECT_EQ(host::NumberAt(asker.Ask(30, {90}).rest, 0), 0u);
    EXPECT_EQ(asker.Ask(28, {1}).status, kDone); // clears that list alone
    EXPECT_EQ(host::NumberAt(asker.Ask(25, {1}).rest, 0), 0u);
    EXPECT_NE(host::NumberAt(asker.Ask(25, {2}).rest, 0), 0u);
    FieldWriter wrongCode = host::Record(10);
    wrongCode.Characters("codes", "11112222", 8);
    EXPECT_EQ(asker.Ask(wrongCode.Written()).status, kWrongLockCode);
    FieldWriter notAutomatic = host::Record(45);
    notAutomatic.Zeros(212);
    EXPECT_EQ(asker.Ask(notAutomatic.Written()).status, kNotAutomatic);
}

Bytes MessageRecord(std::uint32_t command, const std::string& address, const std::string& body)
{
    FieldWriter record = host::Record(command);
    record.Zeros(20);
    record.Text("address", address, 36);
    record.Text("callback", "", 36);
    record.U32("priority", 2);
    record.U32("size", static_cast<std::uint32_t>(2 * body.size() + 2));
    record.Text("body", body, body.size() + 1);
    return record.Written();
}

TEST(SimulatorStores, ListABoxInOrderWhileItChanges)
{
    Phone phone = DefaultPhone();
    phone.messages.clear();
    phone.limits.messages = 4;
    Handset handset(phone);
    host::Asker asker(handset);
    for (std::uint32_t i = 0; i < 3; ++i)
        EXPECT_EQ(host::NumberAt(asker.Ask(MessageRecord(16, "555", "Hello")).rest, 0), i);
    EXPECT_EQ(handset.Deliver({.address = "556", .body = "Hi"}), 3u);
    EXPECT_EQ(asker.Ask(MessageRecord(19, "", "draft")).result, kStoreFull);
    EXPECT_EQ(host::NumberAt(asker.Ask(15, {1}).rest, 0), 3u);
    EXPECT_EQ(host::NumberAt(asker.Ask(17, {1}).rest, 4), 0u);
    EXPECT_EQ(asker.Ask(20, {0}).result,
              kSuccess); // the listing goes on behind a message that is gone
    EXPECT_EQ(host::NumberAt(asker.Ask(18, {1, 0}).rest, 4), 1u);
    EXPECT_EQ(host::NumberAt(asker.Ask(18, {1, 1}).rest, 4), 2u);
    EXPECT_EQ(asker.Ask(18, {1, 2}).rest, Bytes(4)); // no message: the end
    EXPECT_EQ(asker.Ask(22, {3, 1}).result, kSuccess);
    EXPECT_EQ(handset.Snapshot().messages.at(3).status, 1u);
    EXPECT_EQ(asker.Ask(21, {1}).result, kSuccess);
    EXPECT_EQ(handset.Snapshot().messages.size(), 1u);
    EXPECT_EQ(asker.Ask(MessageRecord(16, "", "Hello")).result, kNoAddress);
    EXPECT_EQ(asker.Ask(MessageRecord(16, "5", std::string(161, 'x'))).result, kDoesNotFit);
    EXPECT_EQ(handset.Snapshot().variance & kMessagesChanged, kMessagesChanged);
}

} // namespace
