// What phnctl does with a handset, recorded between the two and played back to it.
#include "phnctl/handset_run.h"
#include "simulator/lines/bridge.h"
#include "simulator/recording/mask.h"
#include "simulator/recording/recording.h"
#include "simulator/recording/replay.h"
#include "simulator/recording/tap.h"

namespace phnctl_test {
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

} // namespace
} // namespace phnctl_test
