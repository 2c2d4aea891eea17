// The exact lines of the codec's refusals.
#include <gtest/gtest.h>

#include "link/frame_codec.h"
#include "link/scripted_port.h"

namespace {

// One byte after the other: what is stuffed, and the line of a refusal.
Bytes Encoded(const Bytes& source, size_t size, Lines& lines)
{
    const auto refuse = [&](const std::string& counter, size_t count) {
        lines.push_back("CPort Error DP::Encode - Destination " + counter + "(" + std::to_string(count) +
                        ") is greater than destination data size(" + std::to_string(size) + ")");
        return Bytes();
    };
    Bytes stuffed;
    for (size_t i = 0; i < source.size(); ++i) {
        if (stuffed.size() >= size)
            return refuse("counter", stuffed.size());
        const bool isEscaped = i + 1 < source.size() && (source[i] == 0x7D || source[i] == 0x7E);
        if (isEscaped && stuffed.size() + 2 >= size)
            return refuse("counter plus 1", stuffed.size() + 2);
        if (isEscaped)
            stuffed.push_back(0x7D);
        stuffed.push_back(isEscaped ? source[i] ^ 0x20 : source[i]);
    }
    return stuffed;
}

} // namespace

// All sources of up to six bytes of three kinds, alone and behind a word of plain ones, into all sizes.
TEST(FrameCodecLog, EncodesAsTheRuleDoesWhateverTheRoom)
{
    LogCapture log(0xFFFFF);
    Lines expected;
    for (const size_t plain : {0, 8}) {
        for (int number = 1; number < 2 * 729; ++number) { // in base 3; its first digit only gives the length
            Bytes source;
            for (int rest = number; rest >= 3; rest /= 3)
                source.push_back(Bytes{0x66, 0x7D, 0x7E}[static_cast<size_t>(rest % 3)]);
            source.insert(source.begin(), plain, 0x11);
            for (DWORD size = 0; size <= 2 * source.size(); ++size) {
                Bytes dest(size);
                DWORD length = 0;
                CFrameCodec().Encode(source.data(), static_cast<DWORD>(source.size()), dest.data(), size, &length);
                dest.resize(length);
                ASSERT_EQ(dest, Encoded(source, size, expected)) << testing::PrintToString(source) << " into " << size;
            }
        }
    }
    EXPECT_TRUE(log.TakeLines() == expected);
}

TEST(FrameCodecLog, EachRefusalHasItsLine)
{
    LogCapture log(0xFFFFF);
    CFrameCodec codec;
    Bytes big(9000, 0x11);
    const Bytes escapes(8181, 0x7E);
    uint8_t* const data = big.data();
    DWORD length = 0;
    bool done = codec.ComposeData(nullptr, 0, data, 8193, &length) ||
                codec.ComposeData(data, 0, nullptr, 8193, &length) ||
                codec.ComposeData(data, 8182, data, 8193, &length) ||
                codec.ComposeData(escapes.data(), 8181, data, 8193, &length);
    EXPECT_EQ(
        log.TakeLines(),
        (Lines{"CPort Error DP::ComposeData ERROR - All or some data buffer parameter is null",
               "CPort Error DP::ComposeData ERROR - All or some data buffer parameter is null",
               "CPort Error DP::ComposeData - Destination buffer size(8193) is not enough. Data to store is 8193",
               "CPort Error DP::Encode - Destination counter plus 1(8194) is greater than destination data size(8193)",
               "CPort Error DP::ComposeData - Failed encoding data"}));

    const uint8_t two[] = {1, 2};
    const uint8_t reply[16] = {0x4B, 0, 0, 0, 0, 7};
    const uint8_t command[16] = {0x4C};
    const uint8_t sequence[16] = {0x4B, 0, 0, 0, 0, 7, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
    done = done || codec.Encode(two, 2, data, 1, &length) || codec.Decode(two, 2, data, 1, &length) ||
           codec.CheckSize(nullptr, 4) == 1 || codec.CheckSize(reply, 3) == 1 || codec.CheckSize(reply, 15) == 1;
    codec = CFrameCodec();
    done = done || codec.DecomposeData(nullptr, 16, data, 8193, &length) ||
           codec.DecomposeData(reply, 16, nullptr, 0, &length) ||
           codec.DecomposeData(Bytes(30).data(), 30, data, 13, &length) ||
           codec.DecomposeData(command, 16, data, 13, &length) ||
           codec.DecomposeData(sequence, 16, data, 13, &length) || codec.DecomposeData(reply, 16, data, 12, &length);
    EXPECT_FALSE(done);
    EXPECT_EQ(
        log.TakeLines(),
        (Lines{"CPort Error DP::Encode - Destination counter(1) is greater than destination data size(1)",
               "CPort Error DP::Decode - Destination counter(1) is greater than destination data size(1)",
               "CPort Error DP::CheckSize - All or some data buffer parameter is null",
               "CPort Error DP::CheckSize - Insufficient size, will reread data. Data length is 3",
               "CPort Error DP::CheckSize - Wrong size will reread data. Data length = 15, Expected length = 16",
               "CPort Error DP::DecomposeData - All or some data buffer parameter is null",
               "CPort Error DP::DecomposeData - All or some data buffer parameter is null",
               "CPort Error DP::DecomposeData - Destination buffer size is not enough. Destination buffer = 13, "
               "data read = 30 - Header = 16",
               "CPort Error DP::DecomposeData - Sent command(75) is not equal to returned command(76)",
               "CPort Error DP::DecomposeData - Expected sequence id(0) does not match the returned sequence id(-1)",
               "CPort Error DP::DecomposeData - Destination buffer(12) is less than terminating character index(13)"}));
}
