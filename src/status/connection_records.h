// The handset's records of its live status, as they follow the reply header. Used by the connection-status service
// alone; the layout is the handset's.
#pragma once

#include "common/packed.h"

struct PHN_PACKED BAT_INFO
{
    uint8_t byBattery1;
    uint8_t byBattery2;
};
static_assert(sizeof(BAT_INFO) == 2);
PHN_OFFSET(BAT_INFO, byBattery1, 0);
PHN_OFFSET(BAT_INFO, byBattery2, 1);

struct PHN_PACKED NETWORK_INFO
{
    uint32_t dwNetwork0;
    uint8_t byNetwork4;
    uint8_t byNetwork5;
    uint16_t wNetwork6;
    uint16_t wNetwork8;
    uint16_t wNetwork10;
    uint16_t wNetwork12;
    uint16_t wNetwork14;
    uint16_t wNetwork16;
    uint16_t wNetwork18;
    uint16_t wNetwork20;
    int32_t nNetwork22;
    char szNetwork26[34];
    int32_t nNetwork60;
    uint32_t dwNetwork64;
};
static_assert(sizeof(NETWORK_INFO) == 68);
PHN_OFFSET(NETWORK_INFO, dwNetwork0, 0);
PHN_OFFSET(NETWORK_INFO, byNetwork4, 4);
PHN_OFFSET(NETWORK_INFO, byNetwork5, 5);
PHN_OFFSET(NETWORK_INFO, wNetwork6, 6);
PHN_OFFSET(NETWORK_INFO, wNetwork8, 8);
PHN_OFFSET(NETWORK_INFO, wNetwork10, 10);
PHN_OFFSET(NETWORK_INFO, wNetwork12, 12);
PHN_OFFSET(NETWORK_INFO, wNetwork14, 14);
PHN_OFFSET(NETWORK_INFO, wNetwork16, 16);
PHN_OFFSET(NETWORK_INFO, wNetwork18, 18);
PHN_OFFSET(NETWORK_INFO, wNetwork20, 20);
PHN_OFFSET(NETWORK_INFO, nNetwork22, 22);
PHN_OFFSET(NETWORK_INFO, szNetwork26, 26);
PHN_OFFSET(NETWORK_INFO, nNetwork60, 60);
PHN_OFFSET(NETWORK_INFO, dwNetwork64, 64);

struct PHN_PACKED CONN_INFO
{
    uint32_t dwConnection0;
    uint32_t dwConnection4;
    uint32_t dwConnection8;
    uint32_t dwConnection12;
    uint8_t byConnection16;
    uint8_t byEndReason;
    uint8_t byConnection18;
};
static_assert(sizeof(CONN_INFO) == 19);
PHN_OFFSET(CONN_INFO, dwConnection0, 0);
PHN_OFFSET(CONN_INFO, dwConnection4, 4);
PHN_OFFSET(CONN_INFO, dwConnection8, 8);
PHN_OFFSET(CONN_INFO, dwConnection12, 12);
PHN_OFFSET(CONN_INFO, byConnection16, 16);
PHN_OFFSET(CONN_INFO, byEndReason, 17);
PHN_OFFSET(CONN_INFO, byConnection18, 18);
