#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "link/frame_codec.h"
#include "wire/record_bytes.h"

namespace {

// The rule, one byte at a time.
Bytes Stuffed(const Bytes& raw)
{
    Bytes stuffed;
    for (const uint8_t byte : raw) {
        if (byte == 0x7D || byte == 0x7E)
            stuffed.insert(stuffed.end(), {0x7D, static_cast<uint8_t>(byte ^ 0x20)});
        else
            stuffed.push_back(byte);
    }
    return stuffed;
}

// Data in which about one byte in `rarity` needs an escape, and its neighbours are near misses.
Bytes MakeData(size_t length, unsigned rarity, std::mt19937& random)
{
    constexpr uint8_t kNear[] = {0x7C, 0x7F, 0x5D, 0x5E, 0xFD, 0xFE, 0x00, 0x80};
    Bytes data(length);
    for (uint8_t& byte : data)
        byte = random() % rarity == 0 ? static_cast<uint8_t>(0x7D + random() % 2) : kNear[random() % 8];
    return data;
}

// Unstuffs in pieces of `step` bytes.
Bytes Unstuffed(const Bytes& stuffed, size_t step)
{
    Bytes raw(stuffed.size());
    size_t done = 0;
    bool escape = false;
    for (size_t start = 0; start < stuffed.size(); start += step) {
        const size_t length = std::min(step, stuffed.size() - start);
        const SStuffing part =
            UnstuffBytes(stuffed.data() + start, length, raw.data() + done, raw.size() - done, &escape);
        EXPECT_EQ(part.uSource, length);
        done += part.uDest;
    }
    EXPECT_FALSE(escape);
    raw.resize(done);
    return raw;
}

} // namespace

TEST(Stuffing, EqualsTheByteByByteRuleHoweverItIsCut)
{
    std::mt19937 random(1);
    for (const unsigned rarity : {1u, 2u, 9u, 200u}) {
        for (size_t length = 0; length < 80; ++length) {
            const Bytes raw = MakeData(length, rarity, random);
            const Bytes expected = Stuffed(raw);
            Bytes stuffed(expected.size() + 2);
            const SStuffing done = StuffBytes(raw.data(), raw.size(), stuffed.data(), stuffed.size());
            stuffed.resize(done.uDest);
            ASSERT_EQ(done.uSource, length);
            ASSERT_EQ(stuffed, expected);
            for (const size_t step : {size_t{1}, size_t{2}, size_t{7}, size_t{8}, size_t{9}, size_t{100}})
                ASSERT_EQ(Unstuffed(stuffed, step), raw) << length << " bytes in steps of " << step;
        }
    }
}

// The destination is a heap block of exactly its size, so that a byte beyond it is seen.
TEST(Stuffing, StopsAtTheDestinationsEnd)
{
    std::mt19937 random(2);
    for (const unsigned rarity : {1u, 3u, 50u}) {
        const Bytes raw = MakeData(40, rarity, random);
        const Bytes expected = Stuffed(raw);
        for (size_t size = 0; size <= expected.size(); ++size) {
            Bytes dest(size);
            const SStuffing done = StuffBytes(raw.data(), raw.size(), dest.data(), size);
            ASSERT_LE(done.uDest, size);
            ASSERT_TRUE(std::equal(dest.begin(), dest.begin() + static_cast<ptrdiff_t>(done.uDest), expected.begin()));

            Bytes back(std::min(size, raw.size()));
            bool escape = false;
            const SStuffing undone = UnstuffBytes(expected.data(), expected.size(), back.data(), back.size(), &escape);
            ASSERT_EQ(undone.uDest, back.size());
            ASSERT_TRUE(std::equal(back.begin(), back.end(), raw.begin()));
        }
    }
}

TEST(CheckSequence, CountsBits)
{
    EXPECT_EQ(CheckSequence("123456789", 72), 0x906E);
    const uint8_t data[] = {0xA7, 0x1C, 0x7E};
    for (size_t bits = 0; bits <= 24; ++bits) {
        unsigned check = 0xFFFF;
        for (size_t bit = 0; bit < bits; ++bit) {
            const unsigned different = (check ^ data[bit / 8] >> bit % 8) & 1;
            check = check >> 1 ^ (different ? 0x8408 : 0);
        }
        EXPECT_EQ(CheckSequence(data, bits), check ^ 0xFFFF) << bits;
    }
}
