// Conversion between 8-bit text in a code page and UTF-16. Control codes become glyphs, on request, in every code page.
#pragma once

#include <winnt.h>

#define CP_ACP 0u
#define CP_UTF8 65001u
#define MB_PRECOMPOSED 0x1u
#define MB_USEGLYPHCHARS 0x4u

PHN_PLATFORM_BEGIN
WINBASEAPI UINT WINAPI GetACP(void) PHN_WIN32_NAME(GetACP);
WINBASEAPI int WINAPI MultiByteToWideChar(UINT CodePage, DWORD dwFlags, LPCSTR lpMultiByteStr, int cbMultiByte,
                                          LPWSTR lpWideCharStr, int cchWideChar) PHN_WIN32_NAME(MultiByteToWideChar);
WINBASEAPI int WINAPI WideCharToMultiByte(UINT CodePage, DWORD dwFlags, LPCWSTR lpWideCharStr, int cchWideChar,
                                          LPSTR lpMultiByteStr, int cbMultiByte, LPCSTR lpDefaultChar,
                                          LPBOOL lpUsedDefaultChar) PHN_WIN32_NAME(WideCharToMultiByte);
PHN_PLATFORM_END
