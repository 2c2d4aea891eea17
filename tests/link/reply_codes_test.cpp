#include <gtest/gtest.h>

#include "link/reply_codes.h"

TEST(ReplyCodes, EveryStatusAndEveryDeviceResult)
{
    constexpr PHN_ERROR kCodes[] = {104, 104, 104, 104, 107, 200, 201, 102, 202, 205, 203, 204, 2, 104, 104};
    for (DWORD status = 0; status < std::size(kCodes); ++status)
        EXPECT_EQ(MapReplyStatus(status), kCodes[status]) << status;
    EXPECT_EQ(MapReplyStatus(0xFFFF), 104u);

    constexpr PHN_ERROR kFirst[] = {0, 304, 305, 101, 306, 303, 104, 104, 1, 104};
    for (DWORD result = 0; result < std::size(kFirst); ++result)
        EXPECT_EQ(MapDeviceResult(result), kFirst[result]) << result;
    for (DWORD result = 9; result < 100; ++result)
        EXPECT_EQ(MapDeviceResult(result), 104u) << result;
    constexpr PHN_ERROR kFrom100[] = {
        301,  1000, 1001, 1002, 1003, 1004, 1005, 1006, 1031, 1032, 1033, 1034, 1035, 1036, 1037, 1038, 1039,
        1040, 1047, 1048, 1063, 1064, 1065, 1066, 1067, 1095, 1096, 1097, 1098, 1099, 1100, 1101, 1102, 1103,
        1104, 1105, 1106, 1107, 1108, 1255, 1769, 1770, 1771, 1772, 1773, 1774, 1775, 1777, 1778, 104,  104,
    };
    static_assert(std::size(kFrom100) == 51);
    for (DWORD result = 100; result < 151; ++result)
        EXPECT_EQ(MapDeviceResult(result), kFrom100[result - 100]) << result;
    EXPECT_EQ(MapDeviceResult(0xFFFFFFFF), 104u);
}
