// The handset's records of its identity and settings, and the requests that carry more than a command number. Used by
// the setup service alone; the layout is the handset's.
#pragma once

#include "common/packed.h"
#include "common/wide_field.h"

struct PHN_PACKED DEVICE_INFO
{
    int8_t cDigits;
    uint8_t abyDigits[14];
    uint32_t dwESN;
    uint8_t byInfo19;
    WideField<32> wszInfo20;
    WideField<32> wszModel;
    WideField<32> wszInfo148;
    uint32_t dwInfo212;
    WideField<11> wszInfo216;
    uint32_t dwInfo238;
    uint32_t dwInfo242;
    uint32_t dwInfo246;
    uint8_t byInfo250;
    uint8_t byInfo251;
    uint8_t byReserved252;
    WideField<15> wszInfo253;
};
static_assert(sizeof(DEVICE_INFO) == 283);
PHN_OFFSET(DEVICE_INFO, cDigits, 0);
PHN_OFFSET(DEVICE_INFO, abyDigits, 1);
PHN_OFFSET(DEVICE_INFO, dwESN, 15);
PHN_OFFSET(DEVICE_INFO, byInfo19, 19);
PHN_OFFSET(DEVICE_INFO, wszInfo20, 20);
PHN_OFFSET(DEVICE_INFO, wszModel, 84);
PHN_OFFSET(DEVICE_INFO, wszInfo148, 148);
PHN_OFFSET(DEVICE_INFO, dwInfo212, 212);
PHN_OFFSET(DEVICE_INFO, wszInfo216, 216);
PHN_OFFSET(DEVICE_INFO, dwInfo238, 238);
PHN_OFFSET(DEVICE_INFO, dwInfo242, 242);
PHN_OFFSET(DEVICE_INFO, dwInfo246, 246);
PHN_OFFSET(DEVICE_INFO, byInfo250, 250);
PHN_OFFSET(DEVICE_INFO, byInfo251, 251);
PHN_OFFSET(DEVICE_INFO, wszInfo253, 253);

struct PHN_PACKED PHONE_PARAMETERS
{
    uint8_t byParameter1;
    uint8_t byParameter2;
    uint16_t wParameter3;
};
static_assert(sizeof(PHONE_PARAMETERS) == 4);
PHN_OFFSET(PHONE_PARAMETERS, byParameter1, 0);
PHN_OFFSET(PHONE_PARAMETERS, byParameter2, 1);
PHN_OFFSET(PHONE_PARAMETERS, wParameter3, 2);

// What follows the request header of an activation: the flag, and the text that the handset dials.
struct PHN_PACKED ACTIVATION_REQUEST
{
    uint32_t bAutomatic;
    WideField<104> wszDialString;
};
static_assert(sizeof(ACTIVATION_REQUEST) == 212);
PHN_OFFSET(ACTIVATION_REQUEST, bAutomatic, 0);
PHN_OFFSET(ACTIVATION_REQUEST, wszDialString, 4);
