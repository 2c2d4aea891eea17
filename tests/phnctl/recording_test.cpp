// What phnctl does with a handset, recorded between the two and played back to it.
#include "phnctl/handset_run.h"
#include "simulator/lines/bridge.h"
#include "simulator/recording/mask.h"
#include "simulator/recording/recording.h"
#include "simulator/recording/replay.h"
#include "simulator/recording/tap.h"

#include <cstdlib>

namespace {

using namespace simulator;

class Recorded : public HandsetRun
{
protected:
    // What stands between phnctl and the handset while `words` are carried out.
    void RunWith(const ConversationMaker& counterpart, const Tap& tap, const std::string& words)
    {
        const DeviceDirectory devices;
        Simulator between(Tapped(PtyLines(devices.Path(), kName), tap), counterpart);
        between.Start();
        m_program.Set("PHNNRV_DEVICES", devices.Path().string());
        Expect(0, words);
    }

    void Record(const std::string& words)
    {
        RecordingWriter writer(m_recording, {});
        PacketAssembler packets(PortKind::Diagnostic, [&](const Packet& packet) { writer.Write(packet); });
        RunWith(
            BridgeTo(DeviceLines(m_devices.Path() / kName), [] {}), [&](const Chunk& chunk) { packets.Take(chunk); },
            words);
    }

    void PlayBack(const std::string& recording, const std::string& words)
    {
        std::string said;
        Replay replay(ReadRecording(recording), [&](const Deviation& deviation) { said = deviation.what; });
        RunWith(
            replay.Conversations(), [](const Chunk&) {}, words);
        EXPECT_EQ(said, "");
        EXPECT_FALSE(replay.Missing());
    }

    const std::string kName = UsbInterfaceName("0001");
    const std::string m_recording = Path("recording");
};

TEST_F(Recorded, ABackupIsReplayedToTheLastByte)
{
    Record("backup " + Path("first"));
    PlayBack(m_recording, "backup " + Path("second"));
    for (const char* file : {"contacts.vcf", "events.ics", "messages.json", "calls.json"})
        EXPECT_EQ(ReadAll(Path("second") + "/" + file), ReadAll(Path("first") + "/" + file)) << file;
    MaskRecording(m_recording, Path("masked"));
    PlayBack(Path("masked"), "backup " + Path("third"));
    EXPECT_NE(ReadAll(Path("third") + "/contacts.vcf"), ReadAll(Path("first") + "/contacts.vcf"));
}

TEST_F(Recorded, AReportIsMadeWithConsentAndHoldsNothingPrivate)
{
    const std::string number = "5558675309", text = "Zaphod Quux";
    Handset().Change(0, [&](Phone& phone) {
        phone.identity.number = number;
        phone.identity.info20 = phone.identity.info148 = text;
        phone.identity.esn = 0x7E7D1234; // 2122125876
    });
    const std::string report = "report " + Path("fault.zip") + " --run info";
    Expect(2, report, {"doctor.txt", "recording-1.jsonl", "say --yes", number}); // the command tells it to the person
    EXPECT_FALSE(std::filesystem::exists(Path("fault.zip")));
    Expect(0, report + " --yes");
    Expect(2, report + " --yes", {"fault.zip exists"});
    Expect(2, "report " + Path("other.zip") + " --run infos", {"no command"});
    const std::string unpack = "cd " + m_folder.Path().string() + " && python3 -m zipfile -e fault.zip parts";
    ASSERT_EQ(std::system(unpack.c_str()), 0);
    std::string all;
    for (const char* part : {"versions.txt", "doctor.txt", "command.txt", "library.log", "recording-1.jsonl"}) {
        const std::string held = ReadAll(Path("parts") + "/" + part);
        EXPECT_NE(held, "") << part;
        all += held;
    }
    EXPECT_TRUE(
        Has(all, "\"name\":\"device information\",\"command\":6,\"sequence\":2,\"reply\":{\"status\":0,\"digits\":10"));
    EXPECT_TRUE(Has(all, "phnctl info ...\nexit status 0\n"));
    for (const std::string& value : {number, text, std::string("2122125876"), std::string("#0001#")})
        EXPECT_FALSE(Has(all, value)) << value;
    m_simulator.Unplug(); // what needs a report most
    Expect(0, "report " + Path("gone.zip") + " --run info --yes --wait 1", {"exit status 1", "not recorded"});
}

} // namespace
