#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <tuple>

#include "common/byte_reader.h"
#include "common/packed.h"

namespace {

constexpr std::array<uint8_t, 10> kData = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

struct PHN_PACKED Record
{
    uint8_t first;
    uint32_t second;
};

} // namespace

TEST(ByteReader, ACountThatIsNotThereMovesNothing)
{
    CByteReader reader(kData);
    ASSERT_TRUE(reader.Skip(4));
    constexpr uint64_t kHuge = std::numeric_limits<uint64_t>::max();
    std::span<const uint8_t> view;
    uint64_t number = 42;
    for (const uint64_t length : {uint64_t{7}, uint64_t{0xFFFFFFFF}, kHuge - 3, kHuge}) {
        EXPECT_FALSE(reader.Skip(length)) << length;
        EXPECT_FALSE(reader.Take(length, &view)) << length;
    }
    EXPECT_FALSE(reader.Read(&number));
    EXPECT_EQ(number, 42u);
    EXPECT_EQ(reader.GetOffset(), 4u);

    const std::tuple<uint64_t, size_t, bool> cases[] = {
        {3, 2, true},   {2, 3, true},  {2, 4, false},      {kHuge / 2 + 1, 2, false},
        {0, 100, true}, {7, 1, false}, {kHuge, 116, false}};
    for (const auto& [count, size, held] : cases)
        EXPECT_EQ(reader.Holds(count, static_cast<size_t>(size)), held) << count << " of " << size;
}
