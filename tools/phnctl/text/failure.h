// How phnctl ends early: a message for standard error, what to do about it, and the exit status that goes with it.
// Thrown anywhere, caught and told in main only.
#pragma once

#include "phnnrv.h"

#include <stdexcept>
#include <string>

namespace phnctl {

constexpr int kDone = 0;
constexpr int kRefused = 1; // the handset, the library or the person refused, or there is no handset
constexpr int kUsage = 2;   // the command line is wrong, or this build cannot do it

class Failure : public std::runtime_error
{
public:
    Failure(int exitStatus, const std::string& message, std::string advice = "")
        : std::runtime_error(message), m_exitStatus(exitStatus), m_advice(std::move(advice))
    {
    }
    int ExitStatus() const { return m_exitStatus; }
    // What the person may do, to be shown below the message; empty: nothing.
    const std::string& Advice() const { return m_advice; }

private:
    int m_exitStatus;
    std::string m_advice;
};

// A code with its name and what it means to a person.
struct ErrorText
{
    PHN_ERROR code = PHN_ERROR_NONE;
    std::string name; // empty: it has none
    std::string meaning;
    std::string joint = ": "; // between the two
};

// "203 PHN_ERROR_INVALID_LOCK_CODE: the lock code is wrong"
std::string ToString(const ErrorText& error);

// The library answered a call with a code other than success.
class Refusal : public Failure
{
public:
    // The error and what it stopped: "(while unlocking the handset)".
    explicit Refusal(const ErrorText& error, const std::string& doing = "", const std::string& advice = "")
        : Failure(kRefused, ToString(error) + (doing.empty() ? "" : " (while " + doing + ")"), advice),
          m_error(error),
          m_doing(doing)
    {
    }
    // A message of the tool's own, where the code alone says too little.
    Refusal(PHN_ERROR code, const std::string& message) : Failure(kRefused, message), m_error{code, "", message} {}

    PHN_ERROR Code() const { return m_error.code; }
    const ErrorText& Error() const { return m_error; }
    const std::string& Doing() const { return m_doing; }
    Refusal Advised(const std::string& advice) const { return {*this, advice}; }
    // The handset is gone, and further calls are in vain.
    bool IsLoss() const { return Code() == PHN_ERROR_NO_DEVICE || Code() == PHN_ERROR_NO_SERVICE_OBJECT; }

private:
    Refusal(const Refusal& other, const std::string& advice)
        : Failure(kRefused, other.what(), advice), m_error(other.m_error), m_doing(other.m_doing)
    {
    }

    ErrorText m_error;
    std::string m_doing; // as in "unlocking the handset"; empty: unknown
};

// Tells over many requests when further ones are in vain: the handset is lost, or three exchanges in a row have failed,
// as they do between the cable's end and the library's notice of it.
class LossWatch
{
public:
    bool IsOver(const Refusal& refusal)
    {
        m_inARow = refusal.Code() == PHN_ERROR_FAILED ? m_inARow + 1 : 0;
        return refusal.IsLoss() || m_inARow == 3;
    }
    void Succeeded() { m_inARow = 0; }

private:
    int m_inARow = 0;
};

} // namespace phnctl
