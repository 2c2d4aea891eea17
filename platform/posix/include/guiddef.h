// GUID and its comparison. Constants of this type are defined by the code that uses them.
#pragma once

#include <string.h>

#include <minwindef.h>

typedef struct _GUID
{
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
} GUID;

#ifdef __cplusplus
typedef const GUID& REFGUID;

inline int IsEqualGUID(REFGUID left, REFGUID right)
{
    return memcmp(&left, &right, sizeof(GUID)) == 0;
}
inline bool operator==(REFGUID left, REFGUID right)
{
    return IsEqualGUID(left, right) != 0;
}
inline bool operator!=(REFGUID left, REFGUID right)
{
    return !(left == right);
}
#endif
