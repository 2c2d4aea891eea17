#include "sms/sms.h"

#include <iterator>

#include "common/byte_writer.h"
#include "link/exchange.h"
#include "link/failure.h"
#include "sms/pdu_decoder.h"
#include "sms/pdu_encoder.h"

namespace {

constexpr CLogSource Log{LOG_CSMS};

PHN_ERROR MapMessageResult(DWORD dwResult)
{
    const PHN_ERROR weError = MapDeviceResult(dwResult);
    return weError == PHN_ERROR_NOT_FOUND ? PHN_ERROR{PHN_ERROR_MESSAGE_NOT_FOUND} : weError;
}

constexpr ReplySpec kCount{sizeof(SMS_RET_INFO_RES), "SMS_RET_INFO_RES("};
constexpr ReplySpec kIndex{sizeof(SMS_RET_INDEX_RES), "SMS_RET_INDEX_RES("};
constexpr ReplySpec kOpened{sizeof(DEV_RX_HEADER), "DEV_RX_HEADER("};

constexpr ExchangeSpec MakeSpec(const char* pszOperation, DWORD dwCommand, DWORD dwTimeout = kServiceTimeout)
{
    return {pszOperation, dwCommand, kIndex, "rcSMSMsg.dwResult", dwTimeout, MapMessageResult};
}

constexpr ExchangeSpec kGetMessageCount{"GetMessageCount", kCommandMessageCount, kCount, "rcSMSMsg.dwResult"};
constexpr ExchangeSpec kGetMessage{"GetMessage",          kCommandVaries,  kCount,
                                   "rcRxSMSMsg.dwResult", kServiceTimeout, MapMessageResult};
constexpr ExchangeSpec kOpenBrew{"OpenBrew", kCommandOpenMessageStore, kOpened};
constexpr ExchangeSpec kSendMessage = MakeSpec("SendMessage", kCommandSendMessage);
constexpr ExchangeSpec kSaveMessage = MakeSpec("SaveMessage", kCommandSaveMessage);
constexpr ExchangeSpec kDeleteMessage = MakeSpec("DeleteMessage", kCommandDeleteMessage);
constexpr ExchangeSpec kDeleteAllMessages = MakeSpec("DeleteAllMessages", kCommandDeleteAllMessages, kDeleteAllTimeout);
constexpr ExchangeSpec kSetMessageStatus = MakeSpec("SetMessageStatus", kCommandSetMessageStatus);

constexpr DWORD kStatusSet = 1;
constexpr DWORD kStatusNotSet = 2;

// The handset's code of a message box.
DWORD GetBoxCode(int32_t eType)
{
    constexpr DWORD kBoxCodes[] = {0, 2, 1, 3, 4};
    return eType >= 0 && eType < int32_t{std::size(kBoxCodes)} ? kBoxCodes[eType] : 0;
}

void SetIndex(PHN_SMS_MESSAGE* pMessage, DWORD dwIndex)
{
    pMessage->wIndex = static_cast<uint16_t>(dwIndex);
    pMessage->uIndexValid = 1;
    pMessage->uSize = sizeof *pMessage;
}

// Sends a message to be sent or saved.
bool PutMessage(HANDLE hDevice, const ExchangeSpec& Spec, const SMS_MESSAGE& Message, PHN_SMS_MESSAGE* pHostMessage,
                PHN_ERROR* pError)
{
    CByteWriter Request;
    Request.Put(Message.rcRecord).PutBytes(Message.strBody.data(), Message.rcRecord.dwBodySize);
    CExchange Exchange(Log, Spec);
    if (!Exchange.Run(hDevice, Request.GetBytes(), pError))
        return false;
    SetIndex(pHostMessage, Exchange.GetReply().Load<SMS_RET_INDEX_RES>().dwNumber);
    return true;
}

// The message at the reader's place; false if it is not whole.
bool Unpack(CByteReader Reader, SMS_MESSAGE* pMessage)
{
    SMS_RECORD& Record = pMessage->rcRecord;
    if (!Reader.Read(&Record) || !Reader.Holds(Record.dwBodySize, 1))
        return false;
    pMessage->strBody.resize(Record.dwBodySize / sizeof(char16_t));
    return Reader.ReadBytes(pMessage->strBody.data(), pMessage->strBody.size() * sizeof(char16_t));
}

} // namespace

bool CSMS::GetMessageCount(HANDLE hDevice, int32_t eType, uint32_t* puCount)
{
    Log.Comment("GetMessageCount being executed.");
    EndListing();
    *puCount = 0;
    PHN_ERROR weError = PHN_ERROR_NONE; // tells the caller nothing
    CExchange Exchange(Log, kGetMessageCount);
    if (!Exchange.Run(hDevice, AsBytes(GetBoxCode(eType)), &weError))
        return false;
    *puCount = Exchange.GetReply().Load<SMS_RET_INFO_RES>().dwNumber;
    return true;
}

bool CSMS::SendMessage(HANDLE hDevice, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError)
{
    Log.Comment("SendMessage being executed.");
    EndListing();
    SMS_MESSAGE Message;
    if (!IS637ToText(pMessage, &Message, pError)) {
        Log.Error("SendMessage - Unable to decode SMS PDU.");
        return false;
    }
    return PutMessage(hDevice, kSendMessage, Message, pMessage, pError);
}

bool CSMS::SaveMessage(HANDLE hDevice, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError)
{
    Log.Comment("SaveMessage being executed.");
    EndListing();
    SMS_MESSAGE Message;
    if (!IS637ToText(pMessage, &Message, pError)) {
        Log.Error("SaveMessage - Unable to decode SMS PDU");
        return false;
    }
    return PutMessage(hDevice, kSaveMessage, Message, pMessage, pError);
}

bool CSMS::GetFirstMessage(HANDLE hDevice, int32_t eType, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError)
{
    Log.Comment("GetFirstMessage being executed.");
    if (!OpenBrew(hDevice, pError)) {
        Log.Error("GetFirstMessage - OpenBrew returned false.");
        return false;
    }
    {
        CLock Lock(m_csListing);
        m_eType = eType;
    }
    if (!GetMessage(hDevice, kCommandFirstMessage, AsBytes(GetBoxCode(eType)), pMessage, pError))
        return false;
    CLock Lock(m_csListing);
    m_bListing = true;
    return true;
}

bool CSMS::GetNextMessage(HANDLE hDevice, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError)
{
    Log.Comment("GetNextMessage being executed.");
    CByteWriter Parameters;
    {
        CLock Lock(m_csListing);
        if (m_bListing)
            Parameters.Put(GetBoxCode(m_eType)).Put(m_dwLastIndex);
    }
    if (Parameters.GetBytes().empty())
        return Fail(Log, pError, PHN_ERROR_NO_MORE_MESSAGES, "GetNextMessage - GetFirstMessage was not called.");
    return GetMessage(hDevice, kCommandNextMessage, Parameters.GetBytes(), pMessage, pError);
}

bool CSMS::DeleteMessage(HANDLE hDevice, DWORD dwIndex, PHN_ERROR* pError)
{
    Log.Comment("DeleteMessage being executed.");
    EndListing();
    return CExchange(Log, kDeleteMessage).Run(hDevice, AsBytes(dwIndex & 0xFFFF), pError);
}

bool CSMS::DeleteAllMessages(HANDLE hDevice, int32_t eType, PHN_ERROR* pError)
{
    Log.Comment("DeleteAllMessages being executed.");
    EndListing();
    return CExchange(Log, kDeleteAllMessages).Run(hDevice, AsBytes(GetBoxCode(eType)), pError);
}

bool CSMS::SetMessageStatus(HANDLE hDevice, DWORD dwIndex, DWORD dwRead, PHN_ERROR* pError)
{
    Log.Comment("SetMessageStatus being executed.");
    EndListing();
    const DWORD adwParameters[] = {dwIndex & 0xFFFF, dwRead ? kStatusSet : kStatusNotSet};
    return CExchange(Log, kSetMessageStatus).Run(hDevice, AsBytes(adwParameters), pError);
}

void CSMS::EndListing()
{
    CLock Lock(m_csListing);
    m_bListing = false;
}

// Lets the handset get its message store ready for a listing.
bool CSMS::OpenBrew(HANDLE hDevice, PHN_ERROR* pError)
{
    return CExchange(Log, kOpenBrew).Run(hDevice, {}, pError);
}

// One step of a listing: the first message of the reply reaches the host, those behind it do not.
bool CSMS::GetMessage(HANDLE hDevice, DWORD dwCommand, std::span<const uint8_t> Parameters, PHN_SMS_MESSAGE* pMessage,
                      PHN_ERROR* pError)
{
    CExchange Exchange(Log, kGetMessage, dwCommand);
    if (!Exchange.Run(hDevice, Parameters, pError))
        return false;
    const DWORD dwNumOfSMS = Exchange.GetReply().Load<SMS_RET_INFO_RES>().dwNumber;
    if (dwNumOfSMS == 0)
        return Fail(Log, pError, PHN_ERROR_NO_MORE_MESSAGES,
                    "GetMessage - rcRxSMSMsg.dwNumOfSMS is less than or equal to 0.");
    SMS_MESSAGE Message;
    if (!Unpack(Exchange.GetReply().GetReader(sizeof(SMS_RET_INFO_RES)), &Message))
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetMessage - The first of %d(0x%X) messages is not whole.",
                    dwNumOfSMS, dwNumOfSMS);
    if (!TextToIS637(pMessage, Message, pError))
        return false;
    SetIndex(pMessage, Message.rcRecord.dwIndex);
    CLock Lock(m_csListing);
    m_dwLastIndex = Message.rcRecord.dwIndex;
    return true;
}
