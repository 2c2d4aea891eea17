// phnctl messages and calls with a handset: what is shown, what is sent, and that nothing goes without a question.
#include "phnctl/handset_run.h"

#include <tuple>

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
    Expect(0, "messages count --json", {"{\"boxes\":[{\"box\":0,\"messages\":1},{\"box\":1,\"messages\":1},"});
    Expect(0, "messages get 3", {"Box        Inbox (0)\n", "Call back  777\nText       Meet at noon!\n"});
    Expect(1, "messages get 4", {"phnctl: no message has the index 4\n"});
    m_program.Set("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    Expect(0, "messages list 0 --json", {"\"time\":\"2009-07-04T11:05:00+02:00\""});
}

// A message may be anything, and a spreadsheet must not reckon with it.
TEST_F(Messages, AreExportedAsATableWithoutFormulas)
{
    Handset().Change(0, [](simulator::Phone& phone) { phone.messages[3].body = "=A1,\"x\""; });
    ::Expect(Run("messages export --format csv " + Path("all.csv")), 0, {"2 messages written to "});
    EXPECT_EQ(ReadAll(Path("all.csv")), "Box,Number,Time,Priority,Call back,Text\r\n"
                                        "Inbox (0),5551\\x1B[2J,2009-07-04 09:05:00,urgent,777,\"'=A1,\"\"x\"\"\"\r\n"
                                        "Drafts (1),5552,,normal,,\r\n");
    EXPECT_EQ(Run("messages export - 0").out, Run("messages list 0 --json").out);
    Expect(0, "contacts export --format csv -", {"\r\nÅse Ødegård,+475552000,+475552001,", "\r\nÉmile Dubois,,555"});
    Expect(2, "contacts export --format vcs -", {"allowed are vcf and csv"});
    Expect(0, "calls export --format csv -", {"List,Other party,Time,Duration (ms)\r\n"});
}

TEST_F(Messages, AreSentAndSaved)
{
    Expect(0, "messages send 555.01-42 Late! --callback 555.0100 --priority 3 --report",
           {"The message is sent; its index is 10.\n"});
    const simulator::Message sent = Stored().at(10);
    EXPECT_EQ(std::tie(sent.address, sent.body, sent.callback), std::tuple("5550142", "Late!", "5550100"));
    EXPECT_EQ(std::tie(sent.priority, sent.replyOption, sent.box),
              std::tuple(3u, 1u, 1u)); // box 1 of the handset: sent
    EXPECT_EQ(Run("messages save 42 Later --json").out, "{\"index\":11}\n");
    EXPECT_EQ(Stored().at(11).box, 2u); // drafts
    Expect(2, "messages send +1 x", {"instead of '+' the prefix"});
    Expect(2, "messages send 1 x --priority 4");
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
    Expect(0, "messages clear --yes --no-copy", {"1 message deleted.\n"});
    EXPECT_TRUE(Stored().empty());
}

TEST_F(Messages, PdusAreExplainedWithoutAHandset)
{
    m_program.Set("PHNNRV_DEVICES", m_folder.Path().string());
    EXPECT_EQ(Run("messages decode 00 00 02 10 02 02 06 D0 21 A9 A9 A9 90 080B00031000200801400A0100").out,
              "Byte  Length  Field                        Meaning\n"
              "0     1       Message type                 0, point-to-point\n"
              "1     4       Teleservice Identifier (00)  4098, cellular messaging\n"
              "5     8       Originating Address (02)     5552 (4 characters of 8 bits, address type 2)\n"
              "13    13      Bearer Data (08)             11 bytes\n"
              "15    5         Message Identifier (00)    type 1, deliver; message id 2\n"
              "20    3         Priority Indicator (08)    1, interactive\n"
              "23    3         Reply Option (0A)          no delivery acknowledgement\n");
    Expect(1, "messages decode 0008 --json", {"\"problems\":[\"the Bearer Data at byte 1 ends before its length\"]"});
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
    Expect(0, "calls list 1 --json",
           {"{\"calls\":[{\"list\":1,\"szEntryText\":\"Émile\",\"time\":null,\"uEntry8\":0,\"durationMs\":0},"});
    Expect(0, "calls count --json", {"{\"lists\":[{\"list\":0,\"calls\":0},{\"list\":1,\"calls\":2},"});
    Expect(2, "calls clear", {"\"Delete all 2 calls of all lists?\""});
    Expect(0, "calls clear 1 --yes --copy " + Path("calls.json"),
           {"2 calls deleted.\n", "A copy would not bring all of it back:\n  2 calls would not come back, ",
            "\nA copy of 2 calls is in " + Path("calls.json") + ".\n"});
    EXPECT_TRUE(Held().calls.empty());
}

} // namespace
