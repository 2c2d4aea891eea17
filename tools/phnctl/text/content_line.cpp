#include "phnctl/text/content_line.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <optional>

namespace phnctl {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kQuotedPrintable = "QUOTED-PRINTABLE";

// Finds the colon that ends the head of a line, outside quotes; goes on where it stopped when the line grows.
class HeadScanner
{
public:
    std::optional<std::size_t> Scan(std::string_view line)
    {
        for (; m_at < line.size(); ++m_at) {
            if (line[m_at] == '"')
                m_isQuoted = !m_isQuoted;
            else if (line[m_at] == ':' && !m_isQuoted)
                return m_at;
        }
        return std::nullopt;
    }

private:
    std::size_t m_at = 0;
    bool m_isQuoted = false;
};

// Where the head ends. An unbalanced quote is ignored.
std::size_t HeadEnd(std::string_view line)
{
    return HeadScanner().Scan(line).value_or(line.find(':'));
}

bool NamesQuotedPrintable(std::string_view head)
{
    return UpperCase(head).find(kQuotedPrintable) != std::string::npos;
}

// Calls `take` with each part between separators outside quotes.
template <class Take>
void SplitUnquoted(std::string_view text, char separator, Take take)
{
    bool isQuoted = false;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == '"')
            isQuoted = !isQuoted;
        if (i == text.size() || (text[i] == separator && !isQuoted)) {
            take(text.substr(begin, i - begin));
            begin = i + 1;
        }
    }
}

std::string WithoutQuotes(std::string_view text)
{
    std::string plain(text);
    std::erase(plain, '"');
    return plain;
}

std::string BareName(const std::string& value)
{
    const std::string upper = UpperCase(value);
    const bool isEncoding = upper == kQuotedPrintable || upper == "BASE64" || upper == "8BIT" || upper == "7BIT";
    return isEncoding ? "ENCODING" : "TYPE";
}

void AddParameter(ContentLine& line, std::string_view text)
{
    const std::size_t equals = text.find('=');
    // A list may be quoted as a whole: type="work,fax".
    const std::string values = WithoutQuotes(equals == kNone ? text : text.substr(equals + 1));
    SplitUnquoted(values, ',', [&](std::string_view value) {
        std::string name = equals == kNone ? BareName(std::string(value)) : UpperCase(text.substr(0, equals));
        line.parameters.push_back({std::move(name), std::string(value)});
    });
}

void TakeApart(const std::string& text, ContentLine& line)
{
    line.group.clear();
    line.name.clear();
    line.parameters.clear();
    const std::size_t end = HeadEnd(text);
    if (end == kNone) {
        line.value = text;
        return;
    }
    line.value = text.substr(end + 1);
    bool isName = true;
    SplitUnquoted(std::string_view(text).substr(0, end), ';', [&](std::string_view part) {
        if (isName) {
            const std::size_t dot = part.rfind('.');
            line.name = UpperCase(part.substr(dot + 1)); // npos + 1 is 0
            line.group = UpperCase(dot == kNone ? "" : part.substr(0, dot));
        } else
            AddParameter(line, part);
        isName = false;
    });
}

// Of the whole characters that so many bytes have room for.
std::size_t FittingLength(std::string_view text, std::size_t room)
{
    if (text.size() <= room)
        return text.size();
    std::size_t length = 0;
    for (;;) {
        const std::size_t character = CharacterLength(text.substr(length));
        if (length + character > room)
            return length;
        length += character;
    }
}

} // namespace

std::string UpperCase(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return upper;
}

bool ContentLine::HasParameter(std::string_view parameter, std::string_view upperCaseValue) const
{
    return std::any_of(parameters.begin(), parameters.end(), [&](const Parameter& candidate) {
        return candidate.name == parameter && UpperCase(candidate.value) == upperCaseValue;
    });
}

std::string ContentLine::ParameterValue(std::string_view parameter) const
{
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const Parameter& candidate) { return candidate.name == parameter; });
    return found == parameters.end() ? std::string() : found->value;
}

std::string_view ContentLineReader::TakePhysicalLine()
{
    ++m_line;
    const std::size_t end = std::min(m_rest.find_first_of("\r\n"), m_rest.size());
    const std::string_view line = m_rest.substr(0, end);
    m_rest.remove_prefix(m_rest.substr(end).starts_with("\r\n") ? end + 2 : std::min(end + 1, m_rest.size()));
    return line;
}

std::string ContentLineReader::Join(std::string_view first)
{
    std::string text(first);
    HeadScanner scanner;
    bool isHeadKnown = false;
    bool isQuotedPrintable = false;
    for (;;) {
        if (const auto end = isHeadKnown ? std::nullopt : scanner.Scan(text)) {
            isHeadKnown = true;
            isQuotedPrintable = NamesQuotedPrintable(std::string_view(text).substr(0, *end));
        }
        if (isQuotedPrintable && text.ends_with('=') && !m_rest.empty()) {
            text.pop_back();
            text += TakePhysicalLine();
        } else if (!isQuotedPrintable && ContinuesFolded()) {
            text += TakePhysicalLine().substr(m_keepsFoldingSpace ? 0 : 1);
        } else {
            return text;
        }
    }
}

bool ContentLineReader::Next(ContentLine& line)
{
    while (!m_rest.empty()) {
        const std::string_view first = TakePhysicalLine();
        line.line = m_line;
        if (first.find_first_not_of(" \t") == kNone)
            continue;
        TakeApart(Join(first), line);
        if (line.name == "BEGIN")
            m_keepsFoldingSpace = false;
        else if (line.name == "VERSION")
            m_keepsFoldingSpace = line.value.starts_with("2.1");
        return true;
    }
    return false;
}

void AppendFolded(std::string& text, std::string_view line)
{
    constexpr std::size_t kLongest = 75;
    std::size_t room = kLongest;
    while (!line.empty()) {
        const std::size_t length = FittingLength(line, room);
        text.append(line.substr(0, length));
        line.remove_prefix(length);
        text += line.empty() ? "\r\n" : "\r\n ";
        room = kLongest - 1;
    }
}

} // namespace phnctl
