#include "phnctl/text/error_names.h"

#include "phnnrv.hpp"
#include "texts/network_errors.h"

#include <fmt/format.h>
#include <string_view>
#include <utility>

namespace phnctl {

namespace {

// What the codes mean. Of all others only the handset knows it.
constexpr std::pair<PHN_ERROR, const char*> kMeanings[] = {
    {PHN_ERROR_NONE, "success"},
    {PHN_ERROR_INVALID_PARAMETER, "a value is out of range, or a text was rejected"},
    {PHN_ERROR_NO_DEVICE, "no handset was found"},
    {PHN_ERROR_COMMUNICATION, "the handset does not answer"},
    {PHN_ERROR_NOT_SUPPORTED, "not supported by the library or for this model"},
    {PHN_ERROR_FAILED, "the exchange with the handset failed, or its answer is not understood"},
    {PHN_ERROR_NO_SERVICE_OBJECT, "the handset was lost, or service has not started"},
    {PHN_ERROR_NOT_AUTOMATIC, "only automatic activation is possible"},
    {PHN_ERROR_INVALID_LOCK_CODE, "the lock code is wrong"},
    {PHN_ERROR_ACTIVATION_STARTED, "activation has started"},
    {PHN_ERROR_BUFFER_TOO_SMALL, "the text does not fit the buffer"},
    {PHN_ERROR_NO_MORE_MESSAGES, "there is no further message"},
    {PHN_ERROR_MESSAGE_NOT_FOUND, "there is no such message"},
    {PHN_ERROR_NO_MORE_ENTRIES, "there is no further call entry"},
    {PHN_ERROR_NOT_FOUND, "nothing is stored there"},
    {PHN_ERROR_RESULT_4, "the handset refused, as when its store is full"},
    {PHN_ERROR_PDU_NO_DESTINATION, "the message has no destination"},
    {PHN_ERROR_PDU_NOT_DECODABLE, "the message is not point-to-point, or not readable"},
};

std::string_view MeaningOf(PHN_ERROR code)
{
    for (const auto& [known, meaning] : kMeanings)
        if (known == code)
            return meaning;
    return "the handset refused, for a reason that only it knows";
}

struct NetworkText
{
    PHN_ERROR code;
    const char* name;
    std::string_view joint; // of name and text
    const char* text;
};

#define PHNCTL_ROW(code, joint, text) {code, #code, joint, text},
constexpr NetworkText kNetworkTexts[] = {PHN_NETWORK_ERROR_TEXTS(PHNCTL_ROW)};
#undef PHNCTL_ROW

} // namespace

std::string ToString(const ErrorText& error)
{
    return fmt::format("{}{}{}{}{}", error.code, error.name.empty() ? "" : " ", error.name, error.joint, error.meaning);
}

std::optional<ErrorText> OwnError(PHN_ERROR code)
{
    if (auto found = NetworkError(code))
        return found;
    const std::string name(phnnrv::Error{code}.name());
    return name.empty() ? std::nullopt : std::optional(ErrorText{code, name, std::string(MeaningOf(code))});
}

std::optional<ErrorText> OwnError(const std::string& name)
{
    for (const auto& [code, known] : phnnrv::kErrorNames)
        if (name == known)
            return OwnError(code);
    for (const NetworkText& known : kNetworkTexts)
        if (name == known.name)
            return NetworkError(known.code);
    return std::nullopt;
}

std::optional<ErrorText> NetworkError(PHN_ERROR code)
{
    for (const NetworkText& known : kNetworkTexts)
        if (known.code == code)
            return ErrorText{code, known.name, known.text, known.joint == "\t" ? " " : std::string(known.joint)};
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
