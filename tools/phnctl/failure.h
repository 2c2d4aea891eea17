// How phnctl ends early: a message for standard error and the exit status that goes with it. Thrown anywhere, caught
// and printed in main only.
#pragma once

#include "phnnrv.h"

#include <stdexcept>
#include <string>

namespace phnctl {

constexpr int kDone = 0;
constexpr int kRefused = 1; // the handset or the library refused, or there is none
constexpr int kUsage = 2;   // the command line is wrong, or this build cannot do it

class Failure : public std::runtime_error
{
public:
    Failure(int exitStatus, const std::string& message) : std::runtime_error(message), m_exitStatus(exitStatus) {}
    int ExitStatus() const { return m_exitStatus; }

private:
    int m_exitStatus;
};

// The library answered a call with a code other than success.
class Refusal : public Failure
{
public:
    Refusal(PHN_ERROR code, const std::string& message) : Failure(kRefused, message), m_code(code) {}
    PHN_ERROR Code() const { return m_code; }
    // The handset is gone, and further calls are in vain.
    bool IsLoss() const { return m_code == PHN_ERROR_NO_DEVICE || m_code == PHN_ERROR_NO_SERVICE_OBJECT; }

private:
    PHN_ERROR m_code;
};

} // namespace phnctl
