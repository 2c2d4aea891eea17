// The network errors with the texts that people see: the library hands them to its host, phnctl shows them without a
// handset. Pure data, in the order of the codes: ROW(enumerator, what joins name and text, text). The texts are shown
// to users as they stand, so they are not to be polished.
#pragma once

#include "phnnrv.h"

#define PHN_NETWORK_ERROR_TEXTS(ROW)                                                                                   \
    ROW(PHN_NETWORK_ERROR_1X_CO_NO_SERVICE, ", ", "Call origination - No Service")                                     \
    ROW(PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE, ", ", "Call origination - Access Failure")                             \
    ROW(PHN_NETWORK_ERROR_1X_CO_CANNOT_ORIGINATE, ", ", "Call origination - Internal Protocols unable to originate")   \
    ROW(PHN_NETWORK_ERROR_1X_CO_REDIRECTION, ", ", "Call origination - Redirection")                                   \
    ROW(PHN_NETWORK_ERROR_1X_CO_HANDOFF, ", ", "Call origination - Handoff to another mode")                           \
    ROW(PHN_NETWORK_ERROR_1X_CO_IN_PROGRESS, ", ", "Call origination - Access Already in progress")                    \
    ROW(PHN_NETWORK_ERROR_1X_CO_PRIORITY_INBOUND, ", ", "Call origination - Incoming call given priority by BS")       \
    ROW(PHN_NETWORK_ERROR_1X_CO_LOCKED, ", ", "Call origination - CDMA locked until power cycle")                      \
    ROW(PHN_NETWORK_ERROR_1X_CO_INCOMPATIBLE_SERVICES, ", ",                                                           \
        "Call origination - Concurrent services requested are not compatible")                                         \
    ROW(PHN_NETWORK_ERROR_1X_CO_CONCURRENT_NOT_SUPPORTED, ", ",                                                        \
        "Call origination - Concurrent service not supported by BS")                                                   \
    ROW(PHN_NETWORK_ERROR_1X_CO_NO_RESPONSE, ", ", "Call origination - BS does not respond to Origination request")    \
    ROW(PHN_NETWORK_ERROR_1X_CO_REJECT, ", ", "Call origination - BS rejects Origination request")                     \
    ROW(PHN_NETWORK_ERROR_1X_CO_SO_NOT_SUPPORTED, ", ",                                                                \
        "Call origination - BS does not support requested Service Option")                                             \
    ROW(PHN_NETWORK_ERROR_1X_CO_CHANNEL_OPEN, ", ", "Call origination - Traffic Channel already open")                 \
    ROW(PHN_NETWORK_ERROR_1X_CO_ALERT_STOP, ", ", "Call origination - BS sent alert stop")                             \
    ROW(PHN_NETWORK_ERROR_1X_CO_MAX_ACCESS, ", ", "Call origination - Max Access Probes")                              \
    ROW(PHN_NETWORK_ERROR_1X_CO_ACTIVATION_NOT_AVAILABLE, ", ",                                                        \
        "Call origination - Service Activation data not available")                                                    \
    ROW(PHN_NETWORK_ERROR_1X_CO_INTERCEPT, ", ", "Call origination - Received intercept from BS")                      \
    ROW(PHN_NETWORK_ERROR_1X_CO_REORDER, ", ", "Call origination - Received reorder from BS")                          \
    ROW(PHN_NETWORK_ERROR_1X_CO_OTHER, ", ", "Call origination - Other undefined error")                               \
    ROW(PHN_NETWORK_ERROR_1X_RELEASE_FADE, ", ", "Release - Fade")                                                     \
    ROW(PHN_NETWORK_ERROR_1X_RELEASE_NO_REASON, ", ", "Release - BS releases call with no reason given")               \
    ROW(PHN_NETWORK_ERROR_1X_RELEASE_SO_NOT_SUPPORTED, ", ",                                                           \
        "Release - BS releases call because it does not support Service Option")                                       \
    ROW(PHN_NETWORK_ERROR_1X_PROTOCOL_FAILURE, ", ", "Internal protocol failures")                                     \
    ROW(PHN_NETWORK_ERROR_1X_REDIRECT_TO_EVDO, ", ", "Redirect from 1x to EVDO")                                       \
    ROW(PHN_NETWORK_ERROR_1X_FADE, ", ", "Fade")                                                                       \
    ROW(PHN_NETWORK_ERROR_1X_USER_DISCONNECTED, ", ", "User ends call")                                                \
    ROW(PHN_NETWORK_ERROR_1X_OTASP_ENDED, ", ", "OTASP ended")                                                         \
    ROW(PHN_NETWORK_ERROR_1X_ENDED_FOR_VOICE, ", ", "SMS or GPS call ended in favor of a voice call")                  \
    ROW(PHN_NETWORK_ERROR_1X_E911_CALL_ENDED, ", ", "E-911 call ended")                                                \
    ROW(PHN_NETWORK_ERROR_1X_E911_EMERGENCY_CALL, ", ", "Voice call terminated in favor of incoming Emergency call")   \
    ROW(PHN_NETWORK_ERROR_1X_E911_GPS_FIX, ", ", "Voice call terminated in favor of GPS fix")                          \
    ROW(PHN_NETWORK_ERROR_WCDMA_NO_SERVICE, ", ", "No service")                                                        \
    ROW(PHN_NETWORK_ERROR_WCDMA_PROTOCOL_FAILURE, ", ", "Internal protocol failure")                                   \
    ROW(PHN_NETWORK_ERROR_WCDMA_ORIGINATION_FAILURE, ", ", "Origination request failure")                              \
    ROW(PHN_NETWORK_ERROR_WCDMA_INCOMMING_REJECTED, ", ", "User rejected incoming")                                    \
    ROW(PHN_NETWORK_ERROR_WCDMA_NETWORK_DISCONNECTED, ", ", "Network ended the call")                                  \
    ROW(PHN_NETWORK_ERROR_WCDMA_USER_DISCONNECTED, ", ", "User ended call")                                            \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_NO_SERVICE, ", ", "Call origination - No service")                                   \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_ACCESS_FAILURE, ", ", "Call origination - Access Failure")                           \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_REDIRECTION, ", ", "Call origination - Redirection")                                 \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_NOT_PREFERRED, ", ", "Call origination - System not preferred (in PRL)")             \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_MODE_HANDOFF, ", ", "Call origination - Handoff to another mode")                    \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_IN_PROGRESS, ", ", "Call origination - Access already in progress")                  \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_SETUP_TIMEOUT, ", ", "Call origination - Connection setup timeout")                  \
    ROW(PHN_NETWORK_ERROR_EVDO_CO_SESSION_NOT_OPEN, ", ", "Call origination - Session is not yet open")                \
    ROW(PHN_NETWORK_ERROR_EVDO_RELEASE_NO_REASON, ", ", "Release - BS releases call with no reason given")             \
    ROW(PHN_NETWORK_ERROR_EVDO_PROTOCOL_FAILURE, ", ", "Internal Protocol Failures")                                   \
    ROW(PHN_NETWORK_ERROR_EVDO_DENY_NO_REASON, ", ", "General Connection Deny with no reason given")                   \
    ROW(PHN_NETWORK_ERROR_EVDO_DENY_NETWORK_BUSY, ", ", "Connection Deny - Network Busy")                              \
    ROW(PHN_NETWORK_ERROR_EVDO_DENY_AUTHENTICATION, ", ", "Connection Deny - Authentication or Billing failure")       \
    ROW(PHN_NETWORK_ERROR_EVDO_REDIRECT_TO_1X, ", ", "Redirect from EVDO to 1x")                                       \
    ROW(PHN_NETWORK_ERROR_EVDO_FADE, ", ", "Fade")                                                                     \
    ROW(PHN_NETWORK_ERROR_EVDO_USER_DISCONNECTED, ", ", "User ended call")                                             \
    ROW(PHN_NETWORK_ERROR_EVDO_GPS_FIX, "\t", "EVDO call, ended in favor of GPS fix")
