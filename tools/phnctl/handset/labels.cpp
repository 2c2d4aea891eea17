#include "phnctl/handset/labels.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <fmt/format.h>
#include <fstream>
#include <optional>
#include <sstream>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kBarLength = 10;

bool SameModel(const std::string& a, const std::string& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

Json ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot be read");
    std::ostringstream text;
    text << file.rdbuf();
    return ParseJson(text.str());
}

// The fields of the file if it is for that model. Throws std::runtime_error when it is no label file.
std::optional<Json> FieldsFor(const std::string& model, const fs::path& path)
{
    const Json file = ReadFile(path);
    const Json* name = file.Find("model");
    const Json* fields = file.Find("fields");
    if (!name || !name->Text() || !fields || !fields->Object())
        throw std::runtime_error("has no \"model\" text and \"fields\" object");
    return SameModel(*name->Text(), model) ? std::optional<Json>(*fields) : std::nullopt;
}

std::int64_t Number(const Json* json, std::int64_t otherwise)
{
    const auto* number = json ? std::get_if<std::int64_t>(&json->value) : nullptr;
    return number ? *number : otherwise;
}

bool IsTrue(const Json* json)
{
    const auto* flag = json ? std::get_if<bool>(&json->value) : nullptr;
    return flag && *flag;
}

// As people say it: "37 s", "2:28", "1:02:05".
std::string Duration(std::int64_t seconds)
{
    if (seconds < 60)
        return fmt::format("{} s", seconds);
    const std::string minutes = fmt::format("{}:{:02}", seconds / 60 % 60, seconds % 60);
    return seconds < 3600 ? minutes : fmt::format("{}:{:0>5}", seconds / 3600, minutes);
}

std::string Bar(std::int64_t value, std::int64_t from, std::int64_t to)
{
    const double range = static_cast<double>(to) - static_cast<double>(from);
    if (range == 0)
        return {};
    const double share = (static_cast<double>(value) - static_cast<double>(from)) / range;
    const auto filled = static_cast<std::size_t>(std::lround(std::clamp(share, 0.0, 1.0) * kBarLength));
    return fmt::format("[{:#<{}}{:.<{}}] ", "", filled, "", kBarLength - filled);
}

} // namespace

Labels Labels::ForModel(const std::string& model, const Options& options)
{
    const fs::path folder = options.labels.empty() ? LabelFolder() : fs::path(options.labels);
    Labels labels;
    std::error_code error;
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == ".json")
            files.push_back(entry.path());
    if (error && !options.labels.empty())
        fmt::print(stderr, "phnctl: label folder {}: {}\n", folder.string(), error.message());
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        try {
            if (auto fields = FieldsFor(model, file)) {
                labels.m_fields = std::move(*fields);
                break;
            }
        } catch (const std::runtime_error& reason) {
            fmt::print(stderr, "phnctl: label file {} is ignored: {}\n", file.string(), Printable(reason.what()));
        }
    }
    return labels;
}

Labels LabelsOf(const Options& options, const Handset& handset)
{
    const auto identity = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
    return Labels::ForModel(FromHandset(identity.szModel), options);
}

std::string Labels::NameOf(const std::string& name, std::int64_t value) const
{
    const Json* entry = m_fields.Find(name);
    const Json* values = entry ? entry->Find("values") : nullptr;
    const Json* found = values ? values->Find(std::to_string(value)) : nullptr;
    return found && found->Text() ? Printable(*found->Text()) : "";
}

std::string Labels::DurationUnit(const std::string& name) const
{
    const Json* entry = m_fields.Find(name);
    const Json* duration = entry ? entry->Find("duration") : nullptr;
    if (!duration || !duration->Text())
        return "";
    return *duration->Text() == "ms" ? "Ms" : "S";
}

bool Labels::Counts(const std::string& name, const std::string& many) const
{
    const Json* entry = m_fields.Find(name);
    const Json* counted = entry ? entry->Find("counts") : nullptr;
    return counted && counted->Text() && *counted->Text() == many;
}

void Labels::Apply(Field& field) const
{
    const Json* entry = m_fields.Find(field.key);
    if (!entry)
        return;
    if (const Json* label = entry->Find("label"); label && label->Text())
        field.label = Printable(*label->Text());
    if (const Json* values = entry->Find("values"))
        if (const Json* name = values->Find(field.shown); name && name->Text())
            field.shown = fmt::format("{} ({})", *name->Text(), field.shown);
    const auto* number = std::get_if<std::int64_t>(&field.value.value);
    if (number && IsTrue(entry->Find("negate")))
        field.shown = fmt::format("{}", -*number);
    if (const Json* duration = entry->Find("duration"); duration && duration->Text() && number)
        field.shown = Duration(*duration->Text() == "ms" ? *number / 1000 : *number);
    if (const Json* unit = entry->Find("unit"); unit && unit->Text())
        field.shown += " " + *unit->Text();
    if (const Json* bar = entry->Find("bar"); bar && number)
        field.shown = Bar(*number, Number(bar->Find("from"), 0), Number(bar->Find("to"), 100)) + field.shown;
}

} // namespace phnctl
