#include <gtest/gtest.h>

#include "phonebook/index_map.h"

namespace {

DWORD RecordOf(const CIndexMap& map, DWORD index, bool mapped)
{
    DWORD record = 0;
    EXPECT_EQ(map.IndexToRecordID(index, &record), mapped) << "index " << index;
    return record;
}

TEST(IndexMap, AnUnmappedIndexIsItsOwnRecordUnlessAnotherContactHoldsThat)
{
    CIndexMap map;
    EXPECT_EQ(RecordOf(map, 5, false), 5u);
    EXPECT_EQ(RecordOf(map, 0xFFFFFFFF, false), 0xFFFFFFFF);
    map.AddIndexMapping(9, 5);
    EXPECT_EQ(RecordOf(map, 9, true), 5u);
    EXPECT_EQ(RecordOf(map, 5, false), 0u);
    map.AddIndexMapping(0, 0);
    map.AddIndexMapping(1, 2);
    EXPECT_EQ(RecordOf(map, 5, false), 1u);
}

TEST(IndexMap, TheLowestFreeRecordBelowAThousandIsTaken)
{
    CIndexMap map;
    for (DWORD record = 0; record < 1000; ++record) {
        EXPECT_EQ(map.GetFreeRecordID(), record);
        map.AddIndexMapping(2000 + record, record);
    }
    map.AddIndexMapping(3000, 1000);
    EXPECT_EQ(map.GetFreeRecordID(), 1000u);
    map.RemoveIndexMapping(3000);
    EXPECT_EQ(RecordOf(map, 7, false), 1000u);
    map.RemoveIndexMapping(2999);
    EXPECT_EQ(RecordOf(map, 7, false), 999u);
}

} // namespace
