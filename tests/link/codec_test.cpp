#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "link/frame_codec.h"
#include "wire/golden_frames.h"
#include "wire/record_bytes.h"

namespace {

// A codec whose last request had this sequence identifier.
CFrameCodec CodecAfter(uint32_t sequence)
{
    CFrameCodec codec;
    uint8_t frame[64];
    DWORD length = 0;
    for (uint32_t sent = 0; sent < sequence; ++sent)
        codec.ComposeData("", 0, frame, sizeof frame, &length);
    return codec;
}

Bytes Compose(CFrameCodec& codec, const Bytes& record)
{
    Bytes frame(8193, 0xEE);
    DWORD length = 0;
    EXPECT_TRUE(codec.ComposeData(record.data(), static_cast<DWORD>(record.size()), frame.data(), 8193, &length));
    EXPECT_TRUE(std::all_of(frame.begin() + length, frame.end(), [](uint8_t byte) { return byte == 0; }));
    frame.resize(length);
    return frame;
}

} // namespace

TEST(FrameCodec, RequestsAreTheGoldenFrames)
{
    for (const wire::GoldenFrame& golden : wire::kRequests) {
        CFrameCodec codec = CodecAfter(golden.sequence - 1);
        EXPECT_EQ(Compose(codec, golden.payload), golden.frame) << golden.name;
    }
}

TEST(FrameCodec, GoldenRepliesDeliverPayloadAndThirteenBytes)
{
    for (const wire::GoldenFrame& golden : wire::kReplies) {
        SCOPED_TRACE(golden.name);
        CFrameCodec codec = CodecAfter(golden.sequence);
        const auto size = static_cast<DWORD>(golden.frame.size());
        Bytes frame(size);
        DWORD length = 0;
        ASSERT_TRUE(codec.Decode(golden.frame.data(), size, frame.data(), size, &length));
        EXPECT_EQ(codec.CheckSize(frame.data(), length), 1);
        EXPECT_EQ(codec.CheckSize(frame.data(), length - 1), 0);
        Bytes reply(8193, 0xEE), expected = golden.payload;
        DWORD delivered = 0;
        ASSERT_TRUE(codec.DecomposeData(frame.data(), length, reply.data(), 8193, &delivered));
        EXPECT_EQ(delivered, golden.payload.size() + 13);
        expected.insert(expected.end(), frame.begin() + length - 3, frame.begin() + length);
        expected.resize(8193);
        EXPECT_EQ(reply, expected);
    }
}

TEST(FrameCodec, RequestsEndWhereTheFrameWouldNotFit)
{
    // And the sequence identifier of the request after it.
    const std::tuple<DWORD, uint8_t, bool, uint8_t> cases[] = {
        {8181, 0x55, true, 2},
        {8182, 0x55, false, 1},
        {8181, 0x7E, false, 2}, // fits only unstuffed, and has used up its identifier
        {4080, 0x7E, true, 2},
    };
    for (const auto& [size, fill, composed, identifier] : cases) {
        CFrameCodec codec;
        const Bytes record(size, fill);
        Bytes frame(8193);
        DWORD length = 0;
        EXPECT_EQ(codec.ComposeData(record.data(), size, frame.data(), 8193, &length), composed) << size;
        EXPECT_EQ(Compose(codec, Bytes{0})[4], identifier) << size;
    }
    CFrameCodec codec;
    uint8_t byte = 0;
    DWORD length = 0;
    for (const DWORD huge : {0xFFFFFFFFu, 0xFFFFFFF5u}) // must not wrap to a small frame
        EXPECT_FALSE(codec.ComposeData(&byte, huge, &byte, 1, &length)) << huge;
}

TEST(FrameCodec, ASizeIsJudgedByWhatHasBeenReceived)
{
    const std::pair<Bytes, int> cases[] = {
        {{}, -1},
        {{0x4B, 0, 0}, 0},
        {{0x4B, 0, 0, 0, 0, 3, 0, 0}, 0}, // too few for any length
        {{0x4B, 0, 0, 0, 0, 0, 0, 0}, 0},
        {{0x4B, 0, 0, 0, 0, 0, 0, 0, 0}, 1},
        {{0x4B, 0, 0, 0, 0, 1, 0, 0, 0}, 0},
        {{0x4B, 0, 0, 0, 0, 0xF7, 0xFF, 0xFF, 0xFF}, 0}, // 2^32: must not wrap
    };
    for (const auto& [received, result] : cases)
        EXPECT_EQ(CFrameCodec().CheckSize(received.data(), static_cast<DWORD>(received.size())), result);
}
