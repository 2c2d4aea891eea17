#include "phnctl/text/error_names.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

namespace {

struct ErrorName
{
    PHN_ERROR code;
    const char* name;
    const char* meaning;
};

constexpr const char* kHandsetOnly = "the handset refused, for a reason that only it knows";

constexpr ErrorName kErrorNames[] = {
    {PHN_ERROR_NONE, "PHN_ERROR_NONE", "success"},
    {PHN_ERROR_INVALID_PARAMETER, "PHN_ERROR_INVALID_PARAMETER", "a value is out of range, or a text was rejected"},
    {PHN_ERROR_STATUS_12, "PHN_ERROR_STATUS_12", kHandsetOnly},
    {PHN_ERROR_NO_DEVICE, "PHN_ERROR_NO_DEVICE", "no handset was found"},
    {PHN_ERROR_COMMUNICATION, "PHN_ERROR_COMMUNICATION", "the handset does not answer"},
    {PHN_ERROR_STATUS_7, "PHN_ERROR_STATUS_7", kHandsetOnly},
    {PHN_ERROR_NOT_SUPPORTED, "PHN_ERROR_NOT_SUPPORTED", "not supported by the library or for this model"},
    {PHN_ERROR_FAILED, "PHN_ERROR_FAILED", "the exchange with the handset failed, or its answer is not understood"},
    {PHN_ERROR_NO_SERVICE_OBJECT, "PHN_ERROR_NO_SERVICE_OBJECT", "the handset was lost, or service has not started"},
    {PHN_ERROR_NOT_AUTOMATIC, "PHN_ERROR_NOT_AUTOMATIC", "only automatic activation is possible"},
    {PHN_ERROR_STATUS_6, "PHN_ERROR_STATUS_6", kHandsetOnly},
    {PHN_ERROR_STATUS_8, "PHN_ERROR_STATUS_8", kHandsetOnly},
    {PHN_ERROR_INVALID_LOCK_CODE, "PHN_ERROR_INVALID_LOCK_CODE", "the lock code is wrong"},
    {PHN_ERROR_STATUS_11, "PHN_ERROR_STATUS_11", kHandsetOnly},
    {PHN_ERROR_ACTIVATION_STARTED, "PHN_ERROR_ACTIVATION_STARTED", "activation has started"},
    {PHN_ERROR_BUFFER_TOO_SMALL, "PHN_ERROR_BUFFER_TOO_SMALL", "the text does not fit the buffer"},
    {PHN_ERROR_NO_MORE_MESSAGES, "PHN_ERROR_NO_MORE_MESSAGES", "there is no further message"},
    {PHN_ERROR_MESSAGE_NOT_FOUND, "PHN_ERROR_MESSAGE_NOT_FOUND", "there is no such message"},
    {PHN_ERROR_NO_MORE_ENTRIES, "PHN_ERROR_NO_MORE_ENTRIES", "there is no further call entry"},
    {PHN_ERROR_NOT_FOUND, "PHN_ERROR_NOT_FOUND", "nothing is stored there"},
    {PHN_ERROR_RESULT_2, "PHN_ERROR_RESULT_2", kHandsetOnly},
    {PHN_ERROR_RESULT_4, "PHN_ERROR_RESULT_4", "the handset refused, as when its store is full"},
    {PHN_ERROR_PDU_NO_DESTINATION, "PHN_ERROR_PDU_NO_DESTINATION", "the message has no destination"},
    {PHN_ERROR_PDU_NOT_DECODABLE, "PHN_ERROR_PDU_NOT_DECODABLE", "the message is not point-to-point, or not readable"},
};
static_assert(std::is_sorted(std::begin(kErrorNames), std::end(kErrorNames),
                             [](const ErrorName& a, const ErrorName& b) { return a.code < b.code; }));

// Codes without a name of their own stand for a result of the handset: runs of consecutive ones.
struct ResultRun
{
    PHN_ERROR first;
    PHN_ERROR last;
    unsigned firstResult;
};

constexpr ResultRun kResultRuns[] = {
    {PHN_ERROR_RESULT_109, PHN_ERROR_RESULT_117, 109}, {PHN_ERROR_RESULT_118, PHN_ERROR_RESULT_119, 118},
    {PHN_ERROR_RESULT_120, PHN_ERROR_RESULT_124, 120}, {PHN_ERROR_RESULT_125, PHN_ERROR_RESULT_138, 125},
    {PHN_ERROR_RESULT_139, PHN_ERROR_RESULT_139, 139}, {PHN_ERROR_RESULT_140, PHN_ERROR_RESULT_146, 140},
    {PHN_ERROR_RESULT_147, PHN_ERROR_RESULT_148, 147},
};

std::string ResultName(const ResultRun& run, PHN_ERROR code)
{
    return fmt::format("PHN_ERROR_RESULT_{}", run.firstResult + (code - run.first));
}

} // namespace

std::string ToString(const ErrorText& error)
{
    return fmt::format("{}{}{}{}{}", error.code, error.name.empty() ? "" : " ", error.name, error.joint, error.meaning);
}

std::optional<ErrorText> OwnError(PHN_ERROR code)
{
    const auto* found = std::lower_bound(std::begin(kErrorNames), std::end(kErrorNames), code,
                                         [](const ErrorName& name, PHN_ERROR wanted) { return name.code < wanted; });
    if (found != std::end(kErrorNames) && found->code == code)
        return ErrorText{code, found->name, found->meaning};
    for (const ResultRun& run : kResultRuns)
        if (code >= run.first && code <= run.last)
            return ErrorText{code, ResultName(run, code), kHandsetOnly};
    return std::nullopt;
}

std::optional<ErrorText> OwnError(const std::string& name)
{
    for (const ErrorName& known : kErrorNames)
        if (name == known.name)
            return OwnError(known.code);
    for (const ResultRun& run : kResultRuns)
        for (PHN_ERROR code = run.first; code <= run.last; ++code)
            if (name == ResultName(run, code))
                return OwnError(code);
    return std::nullopt;
}

ErrorText ErrorOf(PHN_ERROR code)
{
    return OwnError(code).value_or(ErrorText{code, "", "a code without a name"});
}

std::string Explain(PHN_ERROR code)
{
    return ToString(ErrorOf(code));
}

} // namespace phnctl
