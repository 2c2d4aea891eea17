// The exact lines of the codec's refusals.
#include <tuple>

#include "link/frame_codec.h"
#include "link/scripted_port.h"

// All bytes but the last are escaped where they must be; an escape needs room for one byte more than itself.
TEST(FrameCodecLog, EncodesWhileThereIsRoom)
{
    LogCapture log(0xFFFFF);
    const std::tuple<Bytes, DWORD, Bytes, std::string> cases[] = {
        {{}, 0, {}, ""},
        {{0x11, 0x12}, 1, {}, "(1)"},
        {{0x7D, 0x7E}, 3, {0x7D, 0x5D, 0x7E}, ""},
        {{0x7D, 0x7E}, 2, {}, " plus 1(2)"},
        {{0x11, 0x7E, 0x7E}, 3, {}, " plus 1(3)"},
        {{1, 2, 3, 4, 5, 6, 7, 8, 0x7E, 9}, 11, {1, 2, 3, 4, 5, 6, 7, 8, 0x7D, 0x5E, 9}, ""},
        {{1, 2, 3, 4, 5, 6, 7, 8, 0x7E, 9}, 10, {}, " plus 1(10)"},
    };
    for (const auto& [source, size, stuffed, counter] : cases) {
        Bytes dest(size);
        DWORD length = 77;
        EXPECT_EQ(CFrameCodec().Encode(source.data(), static_cast<DWORD>(source.size()), dest.data(), size, &length),
                  counter.empty());
        dest.resize(length);
        EXPECT_EQ(dest, stuffed) << size;
        EXPECT_EQ(log.TakeLines(), counter.empty()
                                       ? Lines{}
                                       : Lines{"CPort Error DP::Encode - Destination counter" + counter +
                                               " is greater than destination data size(" + std::to_string(size) + ")"});
    }
}

TEST(FrameCodecLog, EachRefusalHasItsLine)
{
    LogCapture log(0xFFFFF);
    CFrameCodec codec;
    Bytes big(9000, 0x11);
    const Bytes escapes(8181, 0x7E);
    uint8_t* const data = big.data();
    const uint8_t two[] = {1, 2};
    const uint8_t reply[29] = {0x4B, 0, 0, 0, 0, 7};
    const uint8_t command[16] = {0x4C};
    const uint8_t sequence[16] = {0x4B, 0, 0, 0, 0, 7, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
    DWORD length = 0;
    const auto expect = [&](bool done, const Lines& lines) {
        EXPECT_FALSE(done);
        Lines expected;
        for (const std::string& line : lines)
            expected.push_back("CPort Error DP::" + line);
        EXPECT_EQ(log.TakeLines(), expected);
    };
    expect(codec.Decode(two, 2, data, 1, &length),
           {"Decode - Destination counter(1) is greater than destination data size(1)"});
    expect(codec.CheckSize(nullptr, 4) == 1, {"CheckSize - All or some data buffer parameter is null"});
    expect(codec.CheckSize(reply, 3) == 1, {"CheckSize - Insufficient size, will reread data. Data length is 3"});
    expect(codec.CheckSize(reply, 15) == 1,
           {"CheckSize - Wrong size will reread data. Data length = 15, Expected length = 16"});

    const std::string noBuffer = "DecomposeData - All or some data buffer parameter is null";
    expect(codec.DecomposeData(nullptr, 16, data, 8193, &length), {noBuffer});
    expect(codec.DecomposeData(reply, 16, nullptr, 0, &length), {noBuffer});
    expect(codec.DecomposeData(Bytes(30).data(), 30, data, 13, &length),
           {"DecomposeData - Destination buffer size is not enough. Destination buffer = 13, data read = 30 - "
            "Header = 16"});
    EXPECT_EQ(data[12], 0x11) << "not touched";
    expect(codec.DecomposeData(command, 16, data, 13, &length),
           {"DecomposeData - Sent command(75) is not equal to returned command(76)"});
    expect(codec.DecomposeData(sequence, 16, data, 13, &length),
           {"DecomposeData - Expected sequence id(0) does not match the returned sequence id(-1)"});
    EXPECT_TRUE(codec.DecomposeData(reply, 16, data, 13, &length));
    expect(codec.DecomposeData(reply, 16, data, 12, &length),
           {"DecomposeData - Destination buffer(12) is less than terminating character index(13)"});
    expect(codec.DecomposeData(reply, 29, data, 13, &length),
           {"DecomposeData - Destination buffer(13) is less than terminating character index(26)"});

    const std::string noData = "ComposeData ERROR - All or some data buffer parameter is null";
    expect(codec.ComposeData(nullptr, 0, data, 8193, &length), {noData});
    expect(codec.ComposeData(data, 0, nullptr, 8193, &length), {noData});
    expect(codec.ComposeData(data, 8182, data, 8193, &length),
           {"ComposeData - Destination buffer size(8193) is not enough. Data to store is 8193"});
    expect(codec.ComposeData(escapes.data(), 8181, data, 8193, &length),
           {"Encode - Destination counter plus 1(8194) is greater than destination data size(8193)",
            "ComposeData - Failed encoding data"});
}
