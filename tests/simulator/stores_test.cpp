// The four stores through their commands: what is stored comes back, and what a handset refuses is refused.
#include "simulator/commands/command.h"
#include "simulator/host_side.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

using namespace simulator;

Bytes ContactRecord(std::uint32_t id, const std::string& number)
{
    FieldWriter record = host::Record(36);
    record.U32("id", id);
    record.Zeros(96);
    record.Text("first name", "Anna", 36);
    record.Zeros(288);
    record.U32("entries", 1);
    record.Zeros(8);
    record.Text("value", number, 52);
    record.Zeros(4);
    return record.Written();
}

TEST(SimulatorStores, KeepContactsUnderIdsOfTheHandsetsChoice)
{
    Phone phone = DefaultPhone();
    phone.contacts.clear();
    phone.limits = {.contacts = 10, .numberLength = 20};
    Handset handset(phone);
    host::Asker asker(handset);
    // Id 7 is never given out, so a new contact there moves on; nine ids fill the store.
    const std::pair<std::uint32_t, std::uint32_t> cases[] = {{0, 0}, {7, 8}, {8, 8}, {7, 9}, {7, 1}, {2, 2},
                                                             {3, 3}, {4, 4}, {5, 5}, {6, 6}, {6, 6}};
    for (const auto& [wanted, stored] : cases)
        EXPECT_EQ(host::NumberAt(asker.Ask(ContactRecord(wanted, "555")).rest, 0), stored) << wanted;
    EXPECT_EQ(asker.Ask(ContactRecord(7, "555")).number, kStoreFull);
    EXPECT_EQ(asker.Ask(ContactRecord(10, "555")).number, kBadIndex);
    EXPECT_EQ(asker.Ask(ContactRecord(0, std::string(21, '5'))).number, kDoesNotFit);
}

TEST(SimulatorStores, RefuseWhatIsNotThere)
{
    Handset handset;
    host::Asker asker(handset);
    const std::tuple<std::uint32_t, std::uint32_t, std::uint32_t> cases[] = {
        {35, 999, kBadIndex}, {37, 7, kAbsent},  {37, 6, kSuccess},  {37, 999, kBadIndex},
        {30, 100, kBadIndex}, {32, 90, kAbsent}, {20, 999, kAbsent}, {25, 5, kBadIndex},
    };
    for (const auto& [command, index, result] : cases)
        EXPECT_EQ(asker.Ask(command, {index}).number, result) << command;
    EXPECT_EQ(host::NumberAt(asker.Ask(35, {6}).rest, 4), 0u); // deleted
    asker.Ask(28, {1});                                        // clears that list alone
    EXPECT_EQ(host::NumberAt(asker.Ask(25, {1}).rest, 0), 0u);
    EXPECT_NE(host::NumberAt(asker.Ask(25, {2}).rest, 0), 0u);
}

Bytes MessageRecord(std::uint32_t command, const std::string& address, const std::string& body)
{
    FieldWriter record = host::Record(command);
    record.Zeros(20);
    record.Text("address", address, 36);
    record.Zeros(76);
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
    EXPECT_EQ(asker.Ask(MessageRecord(19, "", "draft")).number, kStoreFull);
    EXPECT_EQ(host::NumberAt(asker.Ask(15, {1}).rest, 0), 3u);
    EXPECT_EQ(host::NumberAt(asker.Ask(17, {1}).rest, 4), 0u);
    asker.Ask(20, {0}); // the listing goes on behind a message that is gone
    EXPECT_EQ(host::NumberAt(asker.Ask(18, {1, 0}).rest, 4), 1u);
    EXPECT_EQ(host::NumberAt(asker.Ask(18, {1, 1}).rest, 4), 2u);
    EXPECT_EQ(asker.Ask(18, {1, 2}).rest, Bytes(4)); // no message: the end
    asker.Ask(22, {3, 1});
    EXPECT_EQ(handset.Snapshot().messages.at(3).status, 1u);
    asker.Ask(21, {1});
    EXPECT_EQ(handset.Snapshot().messages.size(), 1u);
    EXPECT_EQ(asker.Ask(MessageRecord(16, "", "Hello")).number, kNoAddress);
}

} // namespace
