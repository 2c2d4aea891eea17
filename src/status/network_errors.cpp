#include "status/network_errors.h"

#include "common/lookup.h"
#include "phnnrv.h"

namespace {

struct SNetworkError
{
    int32_t nCode;
    std::string_view strText;
};

#define PHN_NETWORK_TEXT(name, text)                                                                                   \
    SNetworkError                                                                                                      \
    {                                                                                                                  \
        name, #name text                                                                                               \
    }

constexpr SNetworkError kNetworkErrors[] = {
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_NO_SERVICE, ", Call origination - No Service"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE, ", Call origination - Access Failure"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_CANNOT_ORIGINATE,
                     ", Call origination - Internal Protocols unable to originate"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_REDIRECTION, ", Call origination - Redirection"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_HANDOFF, ", Call origination - Handoff to another mode"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_IN_PROGRESS, ", Call origination - Access Already in progress"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_PRIORITY_INBOUND,
                     ", Call origination - Incoming call given priority by BS"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_LOCKED, ", Call origination - CDMA locked until power cycle"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_INCOMPATIBLE_SERVICES,
                     ", Call origination - Concurrent services requested are not compatible"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_CONCURRENT_NOT_SUPPORTED,
                     ", Call origination - Concurrent service not supported by BS"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_NO_RESPONSE,
                     ", Call origination - BS does not respond to Origination request"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_REJECT, ", Call origination - BS rejects Origination request"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_SO_NOT_SUPPORTED,
                     ", Call origination - BS does not support requested Service Option"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_CHANNEL_OPEN, ", Call origination - Traffic Channel already open"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_ALERT_STOP, ", Call origination - BS sent alert stop"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_MAX_ACCESS, ", Call origination - Max Access Probes"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_ACTIVATION_NOT_AVAILABLE,
                     ", Call origination - Service Activation data not available"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_INTERCEPT, ", Call origination - Received intercept from BS"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_REORDER, ", Call origination - Received reorder from BS"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_CO_OTHER, ", Call origination - Other undefined error"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_RELEASE_FADE, ", Release - Fade"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_RELEASE_NO_REASON, ", Release - BS releases call with no reason given"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_RELEASE_SO_NOT_SUPPORTED,
                     ", Release - BS releases call because it does not support Service Option"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_PROTOCOL_FAILURE, ", Internal protocol failures"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_REDIRECT_TO_EVDO, ", Redirect from 1x to EVDO"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_FADE, ", Fade"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_USER_DISCONNECTED, ", User ends call"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_OTASP_ENDED, ", OTASP ended"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_ENDED_FOR_VOICE, ", SMS or GPS call ended in favor of a voice call"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_E911_CALL_ENDED, ", E-911 call ended"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_E911_EMERGENCY_CALL,
                     ", Voice call terminated in favor of incoming Emergency call"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_1X_E911_GPS_FIX, ", Voice call terminated in favor of GPS fix"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_WCDMA_NO_SERVICE, ", No service"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_WCDMA_PROTOCOL_FAILURE, ", Internal protocol failure"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_WCDMA_ORIGINATION_FAILURE, ", Origination request failure"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_WCDMA_INCOMMING_REJECTED, ", User rejected incoming"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_WCDMA_NETWORK_DISCONNECTED, ", Network ended the call"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_WCDMA_USER_DISCONNECTED, ", User ended call"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_NO_SERVICE, ", Call origination - No service"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_ACCESS_FAILURE, ", Call origination - Access Failure"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_REDIRECTION, ", Call origination - Redirection"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_NOT_PREFERRED, ", Call origination - System not preferred (in PRL)"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_MODE_HANDOFF, ", Call origination - Handoff to another mode"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_IN_PROGRESS, ", Call origination - Access already in progress"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_SETUP_TIMEOUT, ", Call origination - Connection setup timeout"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_CO_SESSION_NOT_OPEN, ", Call origination - Session is not yet open"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_RELEASE_NO_REASON, ", Release - BS releases call with no reason given"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_PROTOCOL_FAILURE, ", Internal Protocol Failures"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_DENY_NO_REASON, ", General Connection Deny with no reason given"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_DENY_NETWORK_BUSY, ", Connection Deny - Network Busy"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_DENY_AUTHENTICATION,
                     ", Connection Deny - Authentication or Billing failure"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_REDIRECT_TO_1X, ", Redirect from EVDO to 1x"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_FADE, ", Fade"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_USER_DISCONNECTED, ", User ended call"),
    PHN_NETWORK_TEXT(PHN_NETWORK_ERROR_EVDO_GPS_FIX, "\tEVDO call, ended in favor of GPS fix"),
};

#undef PHN_NETWORK_TEXT

static_assert(IsSorted(kNetworkErrors, &SNetworkError::nCode));

} // namespace

std::string_view FindNetworkErrorText(int32_t eError)
{
    const SNetworkError* pError = FindSorted(kNetworkErrors, &SNetworkError::nCode, eError);
    return pError ? pError->strText : std::string_view();
}
