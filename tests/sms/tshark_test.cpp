// The library's PDUs, decoded by tshark, which knows nothing of it. Skipped where that is not installed.
#include "api/handset_fixture.h"
#include "support/tshark.h"
#include "wire/record_bytes.h"

namespace {

// A capture file whose packets are handed to the IS-637 transport dissector: a tag that names it, an end tag, the PDU.
void WriteCapture(const std::string& file, const std::vector<Bytes>& pdus)
{
    const std::string dissector("ansi_637_trans\0\0", 16);
    Bytes capture;
    for (const uint32_t field : {0xA1B2C3D4u, 0x00040002u, 0u, 0u, 65535u, 252u}) // 252: exported PDUs
        Put32(capture, field);
    for (const Bytes& pdu : pdus) {
        const auto length = static_cast<uint32_t>(4 + dissector.size() + 4 + pdu.size());
        for (const uint32_t field : {0u, 0u, length, length})
            Put32(capture, field);
        Append(capture, {0, 12, 0, 16});
        Append(capture, Bytes(dissector.begin(), dissector.end()));
        Append(capture, Bytes(4));
        Append(capture, pdu);
    }
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(capture.data()), static_cast<std::streamsize>(capture.size()));
}

// As tshark prints the six bytes of a time stamp: the value of each byte, whose nibbles are the decimal digits.
std::string Stamp(const simulator::DateTime& utc)
{
    if (utc.year == 0)
        return "\t\t\t\t\t";
    std::string stamp;
    for (const int part : {utc.year % 100, +utc.month, +utc.day, +utc.hour, +utc.minute, +utc.second})
        stamp += (stamp.empty() ? "" : "\t") + std::to_string(std::stoi(std::to_string(part), nullptr, 16));
    return stamp;
}

std::string Fields()
{
    std::string fields = " -e ansi_637_trans.tele_id -e ansi_637_trans.addr_param.number";
    for (const char* const field :
         {"priority_indicator", "reply_option.dak_req", "message_center_ts.year", "message_center_ts.month",
          "message_center_ts.day", "message_center_ts.hours", "message_center_ts.minutes", "message_center_ts.seconds",
          "cb_num.number", "user_data.text"})
        fields += std::string(" -e ansi_637_tele.") + field;
    return fields + " -e _ws.malformed";
}

class PduDissection : public HandsetTest
{
protected:
    // Every message of every box, by its index on the handset.
    std::map<uint32_t, Bytes> ReadAll()
    {
        std::map<uint32_t, Bytes> pdus;
        for (int32_t box = 0; box < 5; ++box) {
            uint8_t buffer[400];
            PHN_SMS_MESSAGE message{sizeof message, buffer, sizeof buffer, 0, 0};
            PHN_ERROR error = CALL(PHN_GetFirstMessage)(box, &message);
            for (; error == PHN_ERROR_NONE;
                 message.uSizeofData = sizeof buffer, error = CALL(PHN_GetNextMessage)(&message))
                pdus[message.wIndex] = Bytes(buffer, buffer + message.uSizeofData);
        }
        return pdus;
    }
};

TEST_F(PduDissection, TsharkReadsWhatTheHandsetStored)
{
    if (!IsTsharkInstalled())
        GTEST_SKIP() << "tshark is not installed";
    setenv("TZ", "UTC0", 1);
    StartService();
    const auto messages = bench_.Handset().Snapshot().messages;
    std::vector<Bytes> pdus;
    std::vector<std::string> expected;
    for (const auto& [index, pdu] : ReadAll()) {
        const simulator::Message& message = messages.at(index);
        pdus.push_back(pdu);
        expected.push_back("4098\t" + message.address + "\t" + std::to_string(message.priority) + "\t" +
                           std::to_string(message.replyOption) + "\t" + Stamp(message.time) + "\t" + message.callback +
                           "\t" + message.body + "\t");
    }
    EXPECT_EQ(pdus.size(), messages.size());
    const std::string file = testing::TempDir() + "phnnrv-" + std::to_string(getpid()) + ".pcap";
    WriteCapture(file, pdus);
    EXPECT_EQ(Tshark(file, "-T fields -E occurrence=f" + Fields()), expected);
    std::remove(file.c_str());
}

} // namespace
