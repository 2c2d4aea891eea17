#include <gtest/gtest.h>

#include <random>

#include "link/frame_codec.h"
#include "simulator/handset/frame.h"
#include "wire/record_bytes.h"

namespace {

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

// The simulated handset goes by the rule byte by byte.
TEST(Stuffing, IsThatOfTheHandsetHoweverItIsCut)
{
    std::mt19937 random(1);
    for (const unsigned rarity : {1u, 2u, 9u, 200u}) {
        for (size_t length = 0; length < 80; ++length) {
            const Bytes raw = MakeData(length, rarity, random);
            Bytes expected = simulator::Stuff(raw);
            expected.pop_back(); // the flag
            Bytes stuffed(expected.size() + 2);
            const SStuffing done = StuffBytes(raw.data(), raw.size(), stuffed.data(), stuffed.size());
            stuffed.resize(done.uDest);
            ASSERT_EQ(done.uSource, length);
            ASSERT_EQ(stuffed, expected);
            for (const size_t step : {size_t{1}, size_t{2}, size_t{7}, size_t{8}, size_t{9}, size_t{100}})
                ASSERT_EQ(Unstuffed(stuffed, step), raw) << length << " bytes in steps of " << step;
            // The destination is a heap block of exactly its size, so that a byte beyond it is seen.
            for (size_t size = 0; length == 40 && size <= expected.size(); ++size) {
                Bytes dest(size), back(std::min(size, length));
                dest.resize(StuffBytes(raw.data(), length, dest.data(), size).uDest);
                ASSERT_TRUE(dest.size() <= size && std::equal(dest.begin(), dest.end(), expected.begin()));
                bool escape = false;
                UnstuffBytes(expected.data(), expected.size(), back.data(), back.size(), &escape);
                ASSERT_TRUE(std::equal(back.begin(), back.end(), raw.begin()));
            }
        }
    }
}

TEST(CheckSequence, CountsBits)
{
    EXPECT_EQ(CheckSequence("123456789", 72), 0x906E);
    const std::pair<size_t, int> cases[] = {{0, 0}, {1, 0x8000}, {7, 0x4B8B}, {8, 0x21CD}, {21, 0x1EB4}};
    for (const auto& [bits, check] : cases)
        EXPECT_EQ(CheckSequence("\xA7\x1C\x7E", bits), check) << bits;
}
