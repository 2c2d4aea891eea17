// phnctl messages and calls with a handset: what is shown, what is sent, and that nothing goes without a question.
#include "phnctl/handset_run.h"

namespace phnctl_test {
namespace {

class Messages : public HandsetRun
{
protected:
    Messages()
    {
        m_program.Set("TZ", "UTC0");
        Handset().Change(0, [](simulator::Phone& phone) {
            phone.messages.clear();
            phone.messages[3] = {.box = 0,
                                 .time = {.year = 2009, .month = 7, .day = 4, .hour = 9, .minute = 5},
                                 .address = "5551\x1B[2J",
                                 .callback = "777",
                                 .priority = 2,
                                 .body = "Meet at noon!"};
            phone.messages[9] = {.box = 2, .address = "5552", .hasBody = false};
        });
    }
    auto Stored() { return Held().messages; }
};

TEST_F(Messages, AreListedCountedAndShown)
{
    EXPECT_EQ(Run("messages list").out,
              "Index  Box         Number       Time                 Priority  Text\n"
              "3      Inbox (0)   5551\\x1B[2J  2009-07-04 09:05:00  urgent    Meet at noon!\n"
              "9      Drafts (1)  5552                              normal\n"
              "\n"
              "2 messages\n");
    EXPECT_EQ(Run("messages list 1 --json").out,
              "{\"messages\":[{\"box\":1,\"index\":9,\"teleservice\":4098,\"from\":\"5552\",\"to\":null,\"time\":null,"
              "\"priority\":0,\"report\":false,\"callback\":null,\"text\":null,"
              "\"pdu\":\"00000210020206D021A9A9A990080B00031000200801000A0100\"}]}\n");
    EXPECT_EQ(Run("messages count --json").out,
              "{\"boxes\":[{\"box\":0,\"messages\":1},{\"box\":1,\"messages\":1},{\"box\":2,\"messages\":0},"
              "{\"box\":3,\"messages\":0},{\"box\":4,\"messages\":0}]}\n");
    EXPECT_EQ(Run("messages get 3").out, "Index      3\n"
                                         "Box        Inbox (0)\n"
                                         "Number     5551\\x1B[2J\n"
                                         "Time       2009-07-04 09:05:00\n"
                                         "Priority   urgent\n"
                                         "Report     not wanted\n"
                                         "Call back  777\n"
                                         "Text       Meet at noon!\n");
    Expect(1, "messages get 4", {"phnctl: no message has the index 4\n"});
    m_program.Set("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    Expect(0, "messages list 0 --json", {"\"time\":\"2009-07-04T11:05:00+02:00\""});
    // A count of 0 may be a failure.
    Handset().AddFault("status=7@15*1");
    Expect(1, "messages count 0", {"phnctl: the messages of box 0 could not be counted\n"});
}

TEST_F(Messages, AreSentAndSaved)
{
    const Outcome sent = m_program.Run({"messages", "send", "(555) 01-42", "The ferry is late", "--callback",
                                        "555.0100", "--priority", "3", "--report"});
    EXPECT_EQ(sent.out, "The message is sent; its index is 10.\n") << sent.err;
    const simulator::Message message = Stored().at(10);
    EXPECT_EQ(message.address, "5550142");
    EXPECT_EQ(message.body, "The ferry is late");
    EXPECT_EQ(message.callback, "5550100");
    EXPECT_EQ(message.priority, 3u);
    EXPECT_EQ(message.replyOption, 1u);
    EXPECT_EQ(message.box, 1u); // of the handset: sent
    EXPECT_EQ(Run("messages save 42 Later --json").out, "{\"index\":11}\n");
    EXPECT_EQ(Stored().at(11).box, 2u); // drafts
    Expect(2, "messages send +1 x", {"instead of '+' the prefix"});
    Expect(2, "messages send 1 x --priority 4");
    Expect(2, "messages encode 1 x --time 2009-01-01T00:00:00");
    Expect(1, "messages send 1 " + std::string(161, 'x'), {"has 161 characters, and the handset may hold fewer"});
    EXPECT_EQ(Stored().size(), 4u);
}

TEST_F(Messages, GoOnlyWhenAskedForAndLeaveACopy)
{
    Expect(2, "messages delete 3", {"Meet at noon!"});
    Expect(1, "messages delete 3 4 --yes"); // one of them is not there
    EXPECT_EQ(Stored().size(), 2u);
    Expect(0, "messages mark unread 3 9", {"2 messages marked as unread. "});
    EXPECT_EQ(Stored().at(9).status, 2u);

    const std::string listed = Run("messages list 0 --json").out;
    Expect(0, "messages delete 3 3 --yes --copy " + Path("copy.json"), {"1 message deleted.\n"});
    EXPECT_EQ(ReadAll(Path("copy.json")), listed);
    EXPECT_EQ(Run("messages clear 0 --yes --json --no-copy").out, "{\"deleted\":0}\n");
    EXPECT_EQ(Stored().size(), 1u);
    Expect(0, "messages clear --yes --no-copy", {"1 message deleted.\n"});
    EXPECT_TRUE(Stored().empty());
}

TEST_F(Messages, PdusAreExplainedWithoutAHandset)
{
    m_program.Set("PHNNRV_DEVICES", m_folder.Path().string());
    EXPECT_EQ(Run("messages decode 00 00 02 10 02 02 06 D0 21 A9 A9 A9 90 080E00031000200801400A01000A0100").out,
              "Byte  Length  Field                        Meaning\n"
              "0     1       Message type                 0, point-to-point\n"
              "1     4       Teleservice Identifier (00)  4098, cellular messaging\n"
              "5     8       Originating Address (02)     5552 (4 characters of 8 bits, address type 2)\n"
              "13    16      Bearer Data (08)             14 bytes\n"
              "15    5         Message Identifier (00)    type 1, deliver; message id 2\n"
              "20    3         Priority Indicator (08)    1, interactive\n"
              "23    3         Reply Option (0A)          no delivery acknowledgement\n"
              "26    3         Reply Option (0A)          no delivery acknowledgement\n");
    Expect(1, "messages decode 0008 --json", {"\"problems\":[\"the Bearer Data at byte 1 ends before its length\"]"});
    phnctl_test::Expect(m_program.Run({"messages", "decode", ""}), 1, {"phnctl: there are no bytes.\n"});
    const std::string encoded = Run("messages encode 12 A").out;
    EXPECT_EQ(encoded, "00000210020403008480081000032000100801000A01000103100C10\n");
    EXPECT_EQ(Run("messages decode -", encoded).status, 0);
}

TEST_F(Messages, CallsAreListedCountedAndCleared)
{
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.calls = {{1, {.list = 3, .duration = 75, .time = {.year = 2009, .month = 3, .day = 2}, .text = "Anna"}},
                       {2, {.list = 2, .time = {}, .text = "\xC3\x89mile"}}};
    });
    EXPECT_EQ(Run("calls list").out, "List                     Other party  Time                 Duration\n"
                                     "Received and missed (1)  Émile                             0 s\n"
                                     "Received and missed (1)  Anna         2009-03-02 00:00:00  1:15\n"
                                     "\n"
                                     "2 calls\n");
    EXPECT_EQ(Run("calls list 1 --json").out,
              "{\"calls\":[{\"list\":1,\"szEntryText\":\"Émile\",\"time\":null,\"uEntry8\":0,\"durationMs\":0},"
              "{\"list\":1,\"szEntryText\":\"Anna\",\"time\":\"2009-03-02T00:00:00\",\"uEntry8\":75000,\"durationMs\":"
              "75000}]}\n");
    EXPECT_EQ(Run("calls count --json").out,
              "{\"lists\":[{\"list\":0,\"calls\":0},{\"list\":1,\"calls\":2},{\"list\":2,\"calls\":0}]}\n");
    Expect(2, "calls clear", {"\"Delete all 2 calls of all lists?\""});
    Expect(0, "calls clear 1 --yes --copy " + Path("calls.json"),
           {"2 calls deleted.\n", "A copy would not bring all of it back:\n  2 calls would not come back, as no call "
                                  "list can be written\nA copy of 2 calls is in " +
                                      Path("calls.json") + ".\n"});
    EXPECT_TRUE(Held().calls.empty());
}

} // namespace
} // namespace phnctl_test
