#include "sms/pdu_decoder.h"

#include "common/byte_reader.h"
#include "link/failure.h"
#include "sms/bit_stream.h"
#include "sms/pdu_items.h"

namespace {

constexpr CLogSource Log{LOG_CSMS};

// How a text lies in the data of its item: form, count, characters. The lines are those of its failures; the second of
// them belongs to every text whose form is understood.
struct SFieldCoding
{
    DWORD dwForm; // the only one understood
    unsigned nFormBits;
    unsigned nCharacterBits;
    DWORD dwMaximum; // characters
    PHN_ERROR weError;
    const char* pszOtherForm;
    const char* pszSizing;
    const char* pszEmpty;
    const char* pszUndecodable;
};

constexpr SFieldCoding kAddressCoding{.dwForm = 0, // DIGIT_MODE and NUMBER_MODE
                                      .nFormBits = 2,
                                      .nCharacterBits = 4,
                                      .dwMaximum = kNumberUnits,
                                      .weError = PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE,
                                      .pszOtherForm =
                                          "IS637AddressDecoder - Address parameter is not a 4 bit DTMF data encoded.",
                                      .pszSizing = "IS637AddressDecoder - pAddress is NULL.",
                                      .pszEmpty = "IS637ToText - nDestAddrLen is 0.",
                                      .pszUndecodable = "IS637ToText - Unable to decode Destination Address parameter"};
constexpr SFieldCoding kUserDataCoding{.dwForm = 2, // MSG_ENCODING: 7-bit ASCII
                                       .nFormBits = 5,
                                       .nCharacterBits = 7,
                                       .dwMaximum = kMaxCharacters,
                                       .weError = PHN_ERROR_PDU_NOT_DECODABLE,
                                       .pszOtherForm =
                                           "IS637UserDataDecoder - IS637 PDU message encoding is not 7-bit ASCII.",
                                       .pszSizing = "IS637UserDataDecoder - pUserData is NULL.",
                                       .pszEmpty = "IS637ToText - nMsgBodyLen is 0.",
                                       .pszUndecodable = "IS637ToText - Unable to decode User Data subparameter."};
constexpr SFieldCoding kCallbackCoding{
    .dwForm = 0, // DIGIT_MODE
    .nFormBits = 1,
    .nCharacterBits = 4,
    .dwMaximum = kNumberUnits,
    .weError = PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE,
    .pszOtherForm = "IS637CallbackNumberDecoder - Parameter is not a 4 bit DTMF data encoded.",
    .pszSizing = "IS637CallbackNumberDecoder - pCallbackNumber is NULL.",
    .pszEmpty = "IS637ToText - nCallBackNumLen is 0.",
    .pszUndecodable = "IS637ToText - Unable to decode Call Back Number subparameter."};

// The characters of the DTMF codes; a code without one stays as it is.
constexpr char kDigits[] = {0, '1', '2', '3', '4', '5', '6', '7', '8', '9', '0', '*', '#', 13, 14, 15};

bool DecodeField(const SFieldCoding& Coding, std::span<const uint8_t> Data, std::string* pstrText, PHN_ERROR* pError)
{
    CBitReader Bits(Data);
    DWORD dwForm = 0;
    if (Bits.Read(Coding.nFormBits, &dwForm) && dwForm != Coding.dwForm) {
        Log.Error("%s", Coding.pszOtherForm);
        return Fail(Log, pError, Coding.weError, "%s", Coding.pszEmpty);
    }
    Log.Error("%s", Coding.pszSizing);
    DWORD dwCount = 0;
    const bool bCounted = Bits.Read(kCountBits, &dwCount);
    if (bCounted && dwCount == 0)
        return Fail(Log, pError, Coding.weError, "%s", Coding.pszEmpty);
    if (!bCounted || dwCount > Coding.dwMaximum || !Bits.ReadText(dwCount, Coding.nCharacterBits, pstrText))
        return Fail(Log, pError, Coding.weError, "%s", Coding.pszUndecodable);
    return true;
}

bool DecodeNumber(const SFieldCoding& Coding, std::span<const uint8_t> Data, WideField<kNumberUnits>* pNumber,
                  PHN_ERROR* pError)
{
    std::string strDigits;
    if (!DecodeField(Coding, Data, &strDigits, pError))
        return false;
    for (char& chDigit : strDigits)
        chDigit = kDigits[static_cast<uint8_t>(chDigit)];
    pNumber->SetText(strDigits);
    return true;
}

bool DecodeBody(std::span<const uint8_t> Data, SMS_MESSAGE* pMessage, PHN_ERROR* pError)
{
    std::string strText;
    if (!DecodeField(kUserDataCoding, Data, &strText, pError))
        return false;
    pMessage->strBody = ToWide(strText);
    pMessage->strBody.resize(strText.size() + 1); // with its terminator
    pMessage->rcRecord.dwBodySize = static_cast<uint32_t>(pMessage->strBody.size() * sizeof(char16_t));
    return true;
}

bool RejectCut(uint8_t byID, PHN_ERROR* pError)
{
    return Fail(Log, pError, PHN_ERROR_PDU_NOT_DECODABLE, "IS637ToText - Item %d(0x%X) runs past the end of the PDU.",
                byID, byID);
}

// The first byte of a subparameter's data; 0 if it is absent. False, logged, if it is cut.
bool ReadFlags(const SItemRange& BearerData, uint8_t byID, DWORD* pdwFlags, PHN_ERROR* pError)
{
    std::span<const uint8_t> Data;
    if (FindIS637Parameter(BearerData, byID, &Data) == eItemCut)
        return RejectCut(byID, pError);
    *pdwFlags = Data.empty() ? 0 : Data[0];
    return true;
}

// A text that is cut cannot be decoded, as one without data.
bool ReadBearerData(const SItemRange& BearerData, SMS_MESSAGE* pMessage, PHN_ERROR* pError)
{
    SMS_RECORD& Record = pMessage->rcRecord;
    std::span<const uint8_t> Data;
    if (FindIS637Parameter(BearerData, kUserData, &Data) != eItemAbsent && !DecodeBody(Data, pMessage, pError))
        return false;
    if (FindIS637Parameter(BearerData, kCallbackNumber, &Data) != eItemAbsent &&
        !DecodeNumber(kCallbackCoding, Data, &Record.szCallbackNumber, pError))
        return false;
    DWORD dwPriority = 0;
    DWORD dwReplyOption = 0;
    if (!ReadFlags(BearerData, kPriorityIndicator, &dwPriority, pError) ||
        !ReadFlags(BearerData, kReplyOption, &dwReplyOption, pError))
        return false;
    Record.dwPriority = dwPriority >> 6;
    Record.dwReplyOption = dwReplyOption >> 6 & 1;
    return true;
}

} // namespace

EItem FindIS637Parameter(const SItemRange& Items, uint8_t byID, std::span<const uint8_t>* pData)
{
    *pData = {};
    CByteReader Reader(Items.Pdu);
    bool bWhole = Reader.Skip(Items.uStart);
    while (bWhole && Reader.GetOffset() < Items.uEnd) {
        uint8_t byItem = 0;
        uint8_t byLength = 0;
        std::span<const uint8_t> Data;
        if (!Reader.Read(&byItem))
            return eItemAbsent;
        bWhole = Reader.Read(&byLength) && Reader.Take(byLength, &Data);
        if (byItem != byID)
            continue;
        *pData = Data;
        return bWhole ? eItemWhole : eItemCut;
    }
    return eItemAbsent;
}

bool IS637ToText(const PHN_SMS_MESSAGE* pHostMessage, SMS_MESSAGE* pMessage, PHN_ERROR* pError)
{
    if (!pHostMessage->pIS637Data || !pHostMessage->uSizeofData) {
        *pError = PHN_ERROR_INVALID_PARAMETER; // the caller's line says it all
        return false;
    }
    const std::span<const uint8_t> Pdu(pHostMessage->pIS637Data, pHostMessage->uSizeofData);
    if (Pdu[0] != kPointToPoint)
        return Fail(Log, pError, PHN_ERROR_PDU_NOT_DECODABLE,
                    "IS637ToText - This PDU is not a point-to-poind SMS data");
    const SItemRange Parameters{Pdu, 1, Pdu.size()};
    std::span<const uint8_t> Data;
    if (FindIS637Parameter(Parameters, kDestinationAddress, &Data) != eItemWhole)
        return Fail(Log, pError, PHN_ERROR_PDU_NO_DESTINATION, "IS637ToText - Destination Address parameter not found");
    if (!DecodeNumber(kAddressCoding, Data, &pMessage->rcRecord.szAddress, pError))
        return false;
    const EItem eBearerData = FindIS637Parameter(Parameters, kBearerData, &Data);
    if (eBearerData == eItemCut)
        return RejectCut(kBearerData, pError);
    if (eBearerData == eItemAbsent) {
        Log.Error("IS637ToText - Bearer data parameter not found.");
        return true;
    }
    const size_t uBearerData = static_cast<size_t>(Data.data() - Pdu.data());
    return ReadBearerData({Pdu, uBearerData, uBearerData + Data.size()}, pMessage, pError);
}
