// The exact lines of the codec's refusals.
#include <gtest/gtest.h>

#include "link/frame_codec.h"
#include "link/scripted_port.h"

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
