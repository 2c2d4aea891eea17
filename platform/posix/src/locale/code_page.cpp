#include "locale/code_page.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>

#include "base/win32_error.h"

namespace platform {
namespace {

// iconv looks at a whole run again when it meets a unit that the target lacks: short runs keep that cheap.
constexpr size_t kRunUnits = 64;

// The first unit of a tag character (U+E0000 to U+E007F), which iconv drops without a word where the target lacks it.
constexpr char16_t kBeforeTag = 0xDB40;

std::string IconvName(UINT number)
{
    switch (number) {
    case CP_UTF8:
        return "UTF-8";
    case 20866:
        return "KOI8-R";
    case 21866:
        return "KOI8-U";
    case 54936:
        return "GB18030";
    default:
        return number >= 28591 && number <= 28605 ? "ISO-8859-" + std::to_string(number - 28590)
                                                  : "CP" + std::to_string(number);
    }
}

// How many units are converted at once.
size_t RunOf(std::u16string_view units)
{
    const size_t tag = units.substr(0, kRunUnits).find(kBeforeTag);
    size_t run = std::max<size_t>(std::min({units.size(), kRunUnits, tag}), 1);
    if (run < units.size() && (units[run - 1] & 0xFC00) == 0xD800)
        run++; // a surrogate pair stays together
    return run;
}

void AppendUnit(std::string& output, char16_t unit)
{
    output.append(reinterpret_cast<const char*>(&unit), sizeof unit);
}

} // namespace

Converter::Converter(const char* to, const char* from) : converter_(iconv_open(to, from))
{
    if (converter_ == kNone && errno != EINVAL)
        ThrowErrno();
}

Converter::~Converter()
{
    if (converter_ != kNone)
        iconv_close(converter_);
}

size_t Converter::Convert(std::string_view input, std::string& output)
{
    char* in = const_cast<char*>(input.data());
    size_t left = input.size();
    for (;;) {
        char buffer[1024];
        char* out = buffer;
        size_t room = sizeof buffer;
        const size_t result = iconv(converter_, &in, &left, &out, &room);
        output.append(buffer, out);
        if (result != static_cast<size_t>(-1) || errno != E2BIG)
            return input.size() - left;
    }
}

void Converter::Flush(std::string& output)
{
    char buffer[32];
    char* out = buffer;
    size_t room = sizeof buffer;
    iconv(converter_, nullptr, nullptr, &out, &room);
    output.append(buffer, out);
}

// A process uses one code page, or two.
CodePage* CodePage::Find(UINT number)
{
    static std::atomic<CodePage*> latest = nullptr;
    CodePage* page = latest;
    if (page && page->number_ == number)
        return page;
    page = FindKnown(number);
    if (page)
        latest = page;
    return page;
}

CodePage* CodePage::FindKnown(UINT number)
{
    struct Known
    {
        std::mutex mutex; // a leaf
        std::map<UINT, std::unique_ptr<CodePage>> pages;
    };
    static Known& known = *new Known;
    const std::lock_guard guard(known.mutex);
    const auto found = known.pages.find(number);
    if (found != known.pages.end())
        return found->second.get();
    const std::string name = IconvName(number);
    Converter decoder("UTF-16LE", name.c_str());
    Converter encoder(name.c_str(), "UTF-16LE");
    if (!decoder || !encoder)
        return nullptr;
    std::unique_ptr<CodePage> page(new CodePage(number, std::move(decoder), std::move(encoder)));
    return known.pages.emplace(number, std::move(page)).first->second.get();
}

UINT CodePage::NamedAnsi()
{
    const char* const text = std::getenv("PHNNRV_ANSI_CODE_PAGE");
    if (!text)
        return kDefaultAnsi;
    const char* const end = text + std::strlen(text);
    UINT number = 0;
    const auto read = std::from_chars(text, end, number);
    const bool known = read.ec == std::errc() && read.ptr == end && number <= 0xFFFF && Find(number);
    return known ? number : kDefaultAnsi;
}

UINT CodePage::Ansi()
{
    UINT number = ansi_.load(std::memory_order_relaxed);
    if (number == 0) {
        number = NamedAnsi();
        ansi_.store(number, std::memory_order_relaxed);
    }
    return number;
}

void CodePage::ForgetAnsi()
{
    ansi_.store(0, std::memory_order_relaxed);
}

CodePage::CodePage(UINT number, Converter decoder, Converter encoder)
    : number_(number), decoder_(std::move(decoder)), encoder_(std::move(encoder))
{
    FindBytes();
    FindUnits();
    isAscii_ = MapsAscii();
}

void CodePage::FindBytes()
{
    for (size_t byte = 0; byte < decoded_.size(); byte++) {
        const char c = static_cast<char>(byte);
        std::string unit;
        if (decoder_.Convert({&c, 1}, unit) == 1) {
            isSingleByte_ = isSingleByte_ && unit.size() == sizeof(char16_t);
            decoder_.Flush(unit);
            if (unit.size() == sizeof(char16_t))
                std::memcpy(&decoded_[byte], unit.data(), unit.size());
            continue;
        }
        if (errno == EINVAL) { // the first byte of several
            isSingleByte_ = false;
            passed_.reset();
            return decoder_.Flush(unit);
        }
        passed_[byte] = byte >= 0x80 && byte <= 0x9F;
        decoded_[byte] = passed_[byte] ? static_cast<char16_t>(byte) : u'?';
    }
}

void CodePage::FindUnits()
{
    for (size_t code = 0; code < encoded_.size(); code++) {
        std::string unit;
        AppendUnit(unit, static_cast<char16_t>(code));
        if (encoder_.Convert(unit, encoded_[code]) == 0 && passed_[code])
            encoded_[code] = static_cast<char>(code);
        encoder_.Flush(encoded_[code]);
    }
}

bool CodePage::MapsAscii() const
{
    for (size_t code = 0; code < 0x80; code++) {
        if (decoded_[code] != code || encoded_[code] != std::string(1, static_cast<char>(code)))
            return false;
    }
    return true;
}

std::u16string CodePage::Decode(std::string_view bytes)
{
    if (isSingleByte_) {
        std::u16string units(bytes.size(), u'\0');
        std::ranges::transform(bytes, units.begin(),
                               [this](char c) { return decoded_[static_cast<unsigned char>(c)]; });
        return units;
    }
    const std::lock_guard guard(mutex_);
    std::string output;
    output.reserve(bytes.size() * sizeof(char16_t));
    while (!bytes.empty()) {
        bytes.remove_prefix(decoder_.Convert(bytes, output));
        if (bytes.empty())
            break;
        decoder_.Flush(output);
        const auto byte = static_cast<unsigned char>(bytes[0]);
        AppendUnit(output, passed_[byte] ? byte : number_ == CP_UTF8 ? u'\uFFFD' : u'?');
        bytes.remove_prefix(1);
    }
    decoder_.Flush(output);
    std::u16string units(output.size() / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), output.data(), output.size());
    return units;
}

bool CodePage::IsFound(std::u16string_view units) const
{
    return std::ranges::all_of(units, [&](char16_t unit) { return unit < encoded_.size() && !encoded_[unit].empty(); });
}

std::string CodePage::Encode(std::u16string_view units, bool* replaced)
{
    std::string output;
    output.reserve(units.size());
    if (IsFound(units)) {
        for (const char16_t unit : units)
            output += encoded_[unit];
        return output;
    }
    const std::lock_guard guard(mutex_);
    while (!units.empty()) {
        const size_t run = RunOf(units);
        const size_t before = output.size();
        const std::string_view bytes(reinterpret_cast<const char*>(units.data()), run * sizeof(char16_t));
        size_t done = encoder_.Convert(bytes, output) / sizeof(char16_t);
        if (units[0] == kBeforeTag && output.size() == before)
            done = 0;
        units.remove_prefix(done);
        if (done == run)
            continue;
        encoder_.Flush(output);
        if (IsFound(units.substr(0, 1))) {
            output += encoded_[units[0]];
        } else {
            output += number_ == CP_UTF8 ? "\xEF\xBF\xBD" : "?";
            if (replaced)
                *replaced = true;
        }
        units.remove_prefix(1);
    }
    encoder_.Flush(output);
    return output;
}

} // namespace platform
