// The four stores through their commands: what is stored comes back, and what a handset refuses is refused.
#include "simulator/command.h"
#include "simulator/host_side.h"

#include <gtest/gtest.h>

#include <string>

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
    struct Case
    {
        std::uint32_t wanted;
        std::uint32_t result;
        std::uint32_t stored;
    };
    // Id 7 is never given out, so a new contact there moves on; nine ids fill the store.
    const Case cases[] = {{0, 0, 0}, {7, 0, 8}, {8, 0, 8}, {7, 0, 9},          {7, 0, 1}, {2, 0, 2},         {3, 0, 3},
                          {4, 0, 4}, {5, 0, 5}, {6, 0, 6}, {7, kStoreFull, 0}, {6, 0, 6}, {10, kBadIndex, 0}};
    for (const Case& one : cases) {
        const host::Reply reply = asker.Ask(ContactRecord(one.wanted, "Anna", "555"));
        EXPECT_EQ(reply.result, one.result) << one.wanted;
        EXPECT_EQ(host::NumberAt(reply.rest, 0), one.stored) << one.wanted;
    }
    EXPECT_EQ(asker.Ask(ContactRecord(0, "Anna", std::string(21, '5'))).result, kDoesNotFit);
    EXPECT_EQ(asker.Ask(ContactRecord(0, "Anna", std::string(40, '5'), 5)).result, kSuccess);
    EXPECT_EQ(asker.Ask(ContactRecord(0, "Anna", "5", 7)).result, kDoesNotFit);
    EXPECT_EQ(asker.Ask(37, {7}).result, kAbsent);
    EXPECT_EQ(asker.Ask(37, {6}).result, kSuccess);
    EXPECT_EQ(asker.Ask(37, {99}).result, kBadIndex);
    EXPECT_EQ(asker.Ask(35, {99}).result, kBadIndex);
    EXPECT_EQ(host::NumberAt(asker.Ask(35, {6}).rest, 4), 0u);
    EXPECT_EQ(asker.Ask(40, {99}).result, kAbsent);
}

TEST(SimulatorStores, GiveAContactBackWithItsPictureInTheOtherField)
{
    Handset handset;
    host::Asker asker(handset);
    const Bytes written = ContactRecord(150, "Ødegård", "+47555");
    ASSERT_EQ(asker.Ask(written).result, kSuccess);
    Bytes expected(written.begin() + 6, written.end());
    std::swap_ranges(expected.begin() + 8, expected.begin() + 12, expected.begin() + 12);
    const Bytes rest = asker.Ask(35, {150}).rest;
    EXPECT_EQ(host::NumberAt(rest, 4), 1u);
    EXPECT_EQ(Bytes(rest.begin() + 8, rest.end()), expected);
}

TEST(SimulatorStores, GiveEveryShippedEventBackAsItWasWritten)
{
    Handset handset;
    host::Asker asker(handset);
    for (std::uint32_t index = 0; index < 35; ++index) {
        const Bytes rest = asker.Ask(30, {index}).rest;
        ASSERT_EQ(rest.size(), 4u + 368u);
        FieldWriter write = host::Record(31);
        write.U32("index", index + 40);
        write.Append(std::span(rest).subspan(4));
        ASSERT_EQ(asker.Ask(write.Written()).result, kSuccess);
        EXPECT_EQ(asker.Ask(30, {index + 40}).rest, rest) << index;
    }
    EXPECT_EQ(host::NumberAt(asker.Ask(30, {90}).rest, 0), 0u);
    EXPECT_EQ(asker.Ask(30, {100}).result, kBadIndex);
    EXPECT_EQ(asker.Ask(32, {90}).result, kAbsent);
    FieldWriter wrongZone = host::Record(31);
    wrongZone.U32("index", 0);
    wrongZone.Zeros(48);
    wrongZone.U32("zone", 14);
    wrongZone.Zeros(368 - 52);
    EXPECT_EQ(asker.Ask(wrongZone.Written()).result, kDoesNotFit);
    EXPECT_EQ(asker.Ask(33).result, kSuccess);
    EXPECT_TRUE(handset.Snapshot().events.empty());
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
    EXPECT_EQ(asker.Ask(20, {0}).result, kSuccess); // the listing goes on behind a message that is gone
    EXPECT_EQ(host::NumberAt(asker.Ask(18, {1, 0}).rest, 4), 1u);
    EXPECT_EQ(host::NumberAt(asker.Ask(18, {1, 1}).rest, 4), 2u);
    EXPECT_EQ(asker.Ask(18, {1, 2}).rest, Bytes(4)); // no message: the end
    EXPECT_EQ(asker.Ask(20, {0}).result, kAbsent);
    EXPECT_EQ(asker.Ask(22, {9, 1}).result, kAbsent);
    EXPECT_EQ(asker.Ask(22, {3, 1}).result, kSuccess);
    EXPECT_EQ(handset.Snapshot().messages.at(3).status, 1u);
    EXPECT_EQ(asker.Ask(21, {1}).result, kSuccess);
    EXPECT_EQ(handset.Snapshot().messages.size(), 1u);
    EXPECT_EQ(asker.Ask(15, {5}).result, kBadIndex);
    EXPECT_EQ(asker.Ask(MessageRecord(16, "", "Hello")).result, kNoAddress);
    EXPECT_EQ(asker.Ask(MessageRecord(16, "5", std::string(161, 'x'))).result, kDoesNotFit);
    EXPECT_EQ(handset.Snapshot().variance & kMessagesChanged, kMessagesChanged);
}

TEST(SimulatorStores, ReadCallListsToTheirEnd)
{
    Handset handset;
    host::Asker asker(handset);
    for (std::uint32_t list = 1; list <= 4; ++list) {
        const std::uint32_t count = host::NumberAt(asker.Ask(25, {list}).rest, 0);
        EXPECT_EQ(count == 0, list == 4);
        std::uint32_t read = 0;
        host::Reply reply = asker.Ask(26, {list});
        for (; reply.result == kSuccess; ++read) {
            ASSERT_EQ(reply.rest.size(), 4u + 204u);
            reply = asker.Ask(27, {list, host::NumberAt(reply.rest, 4)});
        }
        EXPECT_EQ(reply.result, kEndOfList);
        EXPECT_EQ(read, count) << list;
        EXPECT_EQ(asker.Ask(28, {list}).status, kDone);
        EXPECT_EQ(asker.Ask(26, {list}).result, kEndOfList);
    }
    EXPECT_EQ(asker.Ask(25, {5}).result, kBadIndex);
}

TEST(SimulatorStores, GuardTheLockCode)
{
    Handset handset;
    host::Asker asker(handset);
    const auto lock = [&](std::uint8_t flag, const std::string& code) {
        FieldWriter record = host::Record(9);
        record.U8("lock", flag);
        record.Characters("code", code, 4);
        return asker.Ask(record.Written()).status;
    };
    const auto change = [&](const std::string& from, const std::string& to) {
        FieldWriter record = host::Record(10);
        record.Characters("code", from + to, 8);
        return asker.Ask(record.Written()).status;
    };
    EXPECT_EQ(lock(1, "1111"), kWrongLockCode);
    EXPECT_EQ(change("1111", "2222"), kWrongLockCode);
    EXPECT_EQ(handset.Snapshot().setup.lock, 0);
    EXPECT_EQ(change("0000", "2222"), kDone);
    EXPECT_EQ(lock(1, "2222"), kDone);
    EXPECT_EQ(handset.Snapshot().setup.lock, 1);
    FieldWriter notAutomatic = host::Record(45);
    notAutomatic.Zeros(212);
    EXPECT_EQ(asker.Ask(notAutomatic.Written()).status, kNotAutomatic);
}

} // namespace
