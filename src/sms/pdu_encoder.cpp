#include "sms/pdu_encoder.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "link/failure.h"
#include "sms/bit_stream.h"
#include "sms/pdu_items.h"

namespace {

constexpr CLogSource Log{LOG_CSMS};

constexpr DWORD kTeleservice = 0x1002;          // wireless messaging
constexpr DWORD kDelivered[] = {0x10, 0, 0x20}; // MESSAGE_TYPE 1, MESSAGE_ID 2, HEADER_IND 0

// An item from its identifier on; its data is what is written until Close, which fills in its length.
class CItem
{
public:
    CItem(CBitWriter* pWriter, uint8_t byID) : m_Writer(*pWriter)
    {
        m_Writer.Put(byID, 8);
        m_Writer.Put(0, 8);
        m_uStart = m_Writer.GetBytes().size();
    }

    size_t GetLength() const { return m_Writer.GetBytes().size() - m_uStart; }

    void Close()
    {
        m_Writer.Align();
        m_Writer.SetByte(m_uStart - 1, static_cast<uint8_t>(GetLength()));
    }

private:
    CBitWriter& m_Writer;
    size_t m_uStart;
};

void PutByteItem(CBitWriter* pWriter, uint8_t byID, DWORD dwValue)
{
    CItem Item(pWriter, byID);
    pWriter->Put(dwValue, 8);
    Item.Close();
}

// The last two decimal digits, and no more.
DWORD ToBCD(DWORD dwValue)
{
    return dwValue / 10 % 10 << 4 | dwValue % 10;
}

DWORD ToDTMF(char chDigit)
{
    constexpr std::string_view kOutOfOrder = "0*#"; // 10, 11, 12
    const size_t uOffset = kOutOfOrder.find(chDigit);
    return uOffset != kOutOfOrder.npos ? static_cast<DWORD>(10 + uOffset) : static_cast<DWORD>(chDigit) & 0xF;
}

void IS637AddressEncoder(CBitWriter* pWriter, std::string_view strAddress)
{
    CItem Item(pWriter, kOriginatingAddress);
    pWriter->Put(0b11010, 5); // DIGIT_MODE 1, NUMBER_MODE 1, NUMBER_TYPE 2
    pWriter->Put(static_cast<DWORD>(strAddress.size()), kCountBits);
    pWriter->PutText(strAddress, 8);
    Item.Close();
}

void IS637CallbackNumberEncoder(CBitWriter* pWriter, std::string_view strNumber)
{
    CItem Item(pWriter, kCallbackNumber);
    pWriter->Put(0, 1); // DIGIT_MODE
    pWriter->Put(static_cast<DWORD>(strNumber.size()), kCountBits);
    for (const char chDigit : strNumber)
        pWriter->Put(ToDTMF(chDigit), 4);
    if (strNumber.size() == 1)
        pWriter->Put(0, 8);
    Item.Close();
}

void IS637UserDataEncoder(CBitWriter* pWriter, std::string_view strText)
{
    CItem Item(pWriter, kUserData);
    pWriter->Put(2, 5); // MSG_ENCODING: 7-bit ASCII
    pWriter->Put(static_cast<DWORD>(strText.size()), kCountBits);
    pWriter->PutText(strText, 7);
    if (pWriter->IsAligned())
        pWriter->Put(0, 8);
    Item.Close();
}

// The most characters whose User Data fits in uRoom bytes, identifier and length included.
size_t GetFittingCharacters(size_t uRoom)
{
    return std::min((8 * (uRoom - 2) - 14) / 7, kMaxCharacters);
}

// The handset's UTC as local time; as it is if it is no time of the calendar.
SYSTEMTIME ToLocalTime(const DEV_DATE_TIME& Time)
{
    SYSTEMTIME Utc{};
    Utc.wYear = Time.wYear;
    Utc.wMonth = Time.byMonth;
    Utc.wDay = Time.byDay;
    Utc.wHour = Time.byHour;
    Utc.wMinute = Time.byMinute;
    Utc.wSecond = Time.wSecond;
    SYSTEMTIME Local{};
    return SystemTimeToTzSpecificLocalTime(nullptr, &Utc, &Local) ? Local : Utc;
}

void IS637TimeStampEncoder(CBitWriter* pWriter, const SYSTEMTIME& Time)
{
    CItem Item(pWriter, kMessageCenterTimeStamp);
    pWriter->Put(ToBCD(Time.wYear) & 0x7F, 8);
    pWriter->Put(ToBCD(Time.wMonth), 8);
    pWriter->Put(ToBCD(Time.wDay), 8);
    pWriter->Put(ToBCD(Time.wHour), 8);
    pWriter->Put(ToBCD(Time.wMinute), 8);
    pWriter->Put(ToBCD(Time.wSecond) & 0x7F, 8);
    Item.Close();
}

void PutBody(CBitWriter* pWriter, const std::u16string& strBody, size_t uRoom)
{
    const std::string strConverted = ToAnsi(strBody);
    std::string_view strText = strConverted;
    strText = strText.substr(0, strText.find('\0'));
    const size_t uFitting = GetFittingCharacters(uRoom);
    if (strText.size() > uFitting)
        Log.Error("TextToIS637 - Body of %d characters is cut to the %d that a PDU can hold.", strText.size(),
                  uFitting);
    IS637UserDataEncoder(pWriter, strText.substr(0, uFitting));
}

void PutBearerData(CBitWriter* pWriter, const SMS_MESSAGE& Message, bool bAddressed)
{
    const SMS_RECORD& Record = Message.rcRecord;
    CItem BearerData(pWriter, kBearerData);
    CItem Identifier(pWriter, kMessageIdentifier);
    for (const DWORD dwByte : kDelivered)
        pWriter->Put(dwByte, 8);
    Identifier.Close();
    PutByteItem(pWriter, kPriorityIndicator, Record.dwPriority << 6);
    if (bAddressed)
        PutByteItem(pWriter, kReplyOption, Record.dwReplyOption << 6);
    if (Record.rcTime.wYear && Record.rcTime.byMonth && Record.rcTime.byDay)
        IS637TimeStampEncoder(pWriter, ToLocalTime(Record.rcTime));
    const std::string strCallback = Record.szCallbackNumber.GetText();
    if (!strCallback.empty())
        IS637CallbackNumberEncoder(pWriter, strCallback);
    if (Record.dwBodySize)
        PutBody(pWriter, Message.strBody, kMaxItemData - BearerData.GetLength());
    BearerData.Close();
}

} // namespace

bool TextToIS637(PHN_SMS_MESSAGE* pHostMessage, const SMS_MESSAGE& Message, PHN_ERROR* pError)
{
    CBitWriter Pdu;
    Pdu.Put(kPointToPoint, 8);
    CItem Teleservice(&Pdu, kTeleserviceIdentifier);
    Pdu.Put(kTeleservice, 16);
    Teleservice.Close();
    const std::string strAddress = Message.rcRecord.szAddress.GetText();
    IS637AddressEncoder(&Pdu, strAddress);
    PutBearerData(&Pdu, Message, !strAddress.empty());

    const std::span<const uint8_t> Bytes = Pdu.GetBytes();
    const DWORD dwSize = pHostMessage->uSizeofData;
    pHostMessage->uSizeofData = static_cast<uint32_t>(Bytes.size());
    if (dwSize < Bytes.size())
        return Fail(Log, pError, PHN_ERROR_BUFFER_TOO_SMALL,
                    "TextToIS637 - uSizeofData(%d, 0x%X) is less than the PDU's length(%d, 0x%X).", dwSize, dwSize,
                    Bytes.size(), Bytes.size());
    std::memcpy(pHostMessage->pIS637Data, Bytes.data(), Bytes.size());
    return true;
}
