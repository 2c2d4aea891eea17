// Turns a message of the handset into a PDU for the host: a delivered point-to-point message with teleservice,
// originating address in 8-bit form, and a Bearer Data of up to six subparameters in a fixed order. The record is the
// handset's and its fields may be anything.
#pragma once

#include "phnnrv.h"
#include "sms/message_records.h"

// Writes the PDU to pIS637Data and sets uSizeofData, the buffer's size, to its length. False, logged, with
// PHN_ERROR_BUFFER_TOO_SMALL if it does not fit: then uSizeofData says what it needs and the buffer is as before. A
// body that the PDU's length bytes cannot express is cut to what they can, with an Error line.
bool TextToIS637(PHN_SMS_MESSAGE* pHostMessage, const SMS_MESSAGE& Message, PHN_ERROR* pError);
