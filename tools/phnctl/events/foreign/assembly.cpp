#include "phnctl/events/foreign/assembly.h"

#include "phnctl/events/foreign/vcalendar.h"
#include "phnctl/events/foreign/zone_names.h"
#include "phnctl/text/content_value.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>

namespace phnctl {

using namespace event_property;

namespace {

constexpr std::size_t kDeepest = 10; // components within each other: libical frees them by recursion

bool IsName(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_") == std::string_view::npos;
}

// The value in one line, as libical takes it: behind a backslash that escapes nothing it would lose a byte.
std::string PlainValue(const ContentLine& line)
{
    const std::string value = DecodedValue(line);
    std::string plain;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool isEscape = c == '\\' && i + 1 < value.size() &&
                              std::string_view("nN,;:\\\"").find(value[i + 1]) != std::string_view::npos;
        if (isEscape)
            plain += {c, value[++i]};
        else if (c == '\\')
            plain += "\\\\";
        else if (c == '\n')
            plain += "\\n";
        else if (c != '\r')
            plain += c;
    }
    return WithoutControls(plain);
}

// The whole value of each parameter, commas included.
std::map<std::string, std::string> WholeParameters(const ContentLine& line)
{
    std::map<std::string, std::string> whole;
    for (const auto& [name, value] : line.parameters) {
        const auto [parameter, isFirst] = whole.try_emplace(name);
        parameter->second += (isFirst ? "" : ",") + WithoutControls(Utf8Of(value));
    }
    return whole;
}

std::string PlainLine(const ContentLine& line)
{
    std::string text = line.name;
    for (const auto& [name, value] : WholeParameters(line)) {
        if (!IsName(name) || name == "CHARSET" || name == "ENCODING")
            continue;
        const char* const quote = value.find_first_of(":;,") == std::string::npos ? "" : "\"";
        text += fmt::format(";{}={}{}{}", name, quote, value, quote);
    }
    return text + ':' + PlainValue(line);
}

class Assembler
{
public:
    explicit Assembler(std::string_view text) : m_reader(text)
    {
        m_result.root.reset(icalcomponent_new(ICAL_XROOT_COMPONENT));
        m_result.origins[m_result.root.get()];
    }

    Assembly Assemble()
    {
        VCalendarReader oldReader;
        ContentLine line;
        while (m_reader.Next(line))
            for (const ContentLine& plain : oldReader.Take(line))
                Take(plain);
        EndEarly();
        return std::move(m_result);
    }

private:
    struct Open
    {
        ComponentOwner component;
        Assembly::Origin* origin;
        bool isGuessTold = false;
    };

    void Take(const ContentLine& line)
    {
        if (line.name == "BEGIN")
            Begin(OneLine(UpperCase(Utf8Of(line.value))), line.line);
        else if (line.name == "END")
            End(OneLine(UpperCase(line.value)));
        else if (!m_open.empty() && m_tooDeep == 0)
            AddProperty(line);
    }

    void Begin(const std::string& kind, std::size_t line)
    {
        if (kind == "VEVENT" && Find(kind) != m_open.size())
            GiveUpEvent("not-an-event", "the event has no END:VEVENT before the next one begins");
        if (m_open.size() >= kDeepest || m_tooDeep != 0) {
            ++m_tooDeep;
            return;
        }
        const icalcomponent_kind known = icalenum_string_to_component_kind(kind.c_str());
        ComponentOwner component(icalcomponent_new(known == ICAL_NO_COMPONENT ? ICAL_X_COMPONENT : known));
        // What was dropped may have stood at the same address, with its parts.
        Assembly::Origin& origin = m_result.origins[component.get()] = {};
        origin.kind = kind;
        origin.line = line;
        origin.lines.emplace("BEGIN", line);
        m_open.push_back({std::move(component), &origin});
    }

    void End(const std::string& kind)
    {
        if (m_tooDeep != 0) {
            --m_tooDeep;
            return;
        }
        for (const std::size_t place = Find(kind); m_open.size() > place;)
            Close();
    }

    // The place of the innermost open component of a kind; their number if there is none.
    std::size_t Find(const std::string& kind) const
    {
        for (std::size_t i = m_open.size(); i > 0; --i)
            if (m_open[i - 1].origin->kind == kind)
                return i - 1;
        return m_open.size();
    }

    void Close()
    {
        icalcomponent* const component = m_open.back().component.release();
        m_open.pop_back();
        icalcomponent_add_component(m_open.empty() ? m_result.root.get() : m_open.back().component.get(), component);
    }

    void Drop()
    {
        m_result.origins.erase(m_open.back().component.get());
        m_open.pop_back();
    }

    void GiveUpEvent(const char* code, const char* problem)
    {
        const std::size_t event = Find("VEVENT");
        EventDraft& draft = m_result.broken.emplace_back();
        draft.line = m_open[event].origin->line;
        draft.text = Given(icalcomponent_get_summary(m_open[event].component.get()));
        draft.problemCode = code;
        draft.problem = problem;
        while (m_open.size() > event)
            Drop();
    }

    void EndEarly()
    {
        if (m_open.empty())
            return;
        constexpr const char* kProblem = "the calendar ends early, without an END: its whole events are read";
        if (Find("VEVENT") != m_open.size()) {
            GiveUpEvent("cut-off", kProblem);
        } else {
            EventDraft& draft = m_result.broken.emplace_back();
            draft.line = m_open.front().origin->line;
            draft.problemCode = "cut-off";
            draft.problem = kProblem;
        }
        for (; !m_open.empty(); m_open.back().origin->kind == "VCALENDAR" ? Close() : Drop())
            continue;
    }

    void AddProperty(const ContentLine& line)
    {
        Assembly::Origin& origin = *m_open.back().origin;
        if (!IsName(line.name))
            return TellVain("", line.line, "it is no property");
        if (line.value.find_first_not_of(" \t") == std::string::npos)
            return; // what is empty says nothing that could be lost
        origin.lines.try_emplace(line.name, line.line);
        if (origin.kind == "VEVENT" && line.name == kRule)
            return origin.rules.push_back(PlainValue(line));
        if (line.name == kStart)
            origin.zone = WholeParameters(line)["TZID"];
        TellGuess(line);
        TakeOver(line);
    }

    // As many properties as libical makes of one line.
    void TakeOver(const ContentLine& line)
    {
        const std::string text = "BEGIN:VCALENDAR\r\n" + PlainLine(line) + "\r\nEND:VCALENDAR\r\n";
        const ComponentOwner parsed(icalparser_parse_string(text.c_str()));
        bool isVain = !parsed;
        while (icalproperty* const property =
                   parsed ? icalcomponent_get_first_property(parsed.get(), ICAL_ANY_PROPERTY) : nullptr) {
            icalcomponent_remove_property(parsed.get(), property);
            if (icalproperty_isa(property) != ICAL_XLICERROR_PROPERTY) {
                icalcomponent_add_property(m_open.back().component.get(), property);
                continue;
            }
            isVain = true;
            icalproperty_free(property);
        }
        if (isVain)
            TellVain(line.name, line.line, "it says what such a property cannot say");
    }

    void TellVain(const std::string& property, std::size_t line, const char* words)
    {
        std::vector<Note>& notes = m_open.back().origin->notes;
        if (property.empty() && !notes.empty() && notes.back().line + 1 == line && notes.back().property.empty())
            notes.back().line = line; // the lines of one broken value count once
        else
            notes.push_back({"not-a-property", property, line, words});
    }

    // Of the text that people read, once.
    void TellGuess(const ContentLine& line)
    {
        Open& open = m_open.back();
        if (open.isGuessTold || (line.name != "SUMMARY" && line.name != kText) || !IsCharsetGuessed(line))
            return;
        open.isGuessTold = true;
        open.origin->notes.push_back(
            {"charset-guessed", line.name, line.line, GuessedCharset(Unescaped(DecodedValue(line)))});
    }

    ContentLineReader m_reader;
    Assembly m_result;
    std::vector<Open> m_open; // from the outside
    std::size_t m_tooDeep = 0;
};

// libical looks for a zone that the file does not define under its name among the system's files, whatever the name,
// and does not survive a file that is none: it gets the names of the system's zones only.
class ZoneNaming
{
public:
    void Apply(icalcomponent* component)
    {
        for (icalproperty* property = icalcomponent_get_first_property(component, ICAL_ANY_PROPERTY); property;
             property = icalcomponent_get_next_property(component, ICAL_ANY_PROPERTY))
            Name(property, component);
        icalcompiter next = icalcomponent_begin_component(component, ICAL_ANY_COMPONENT);
        for (; icalcompiter_deref(&next); icalcompiter_next(&next))
            Apply(icalcompiter_deref(&next));
    }

private:
    void Name(icalproperty* property, icalcomponent* component)
    {
        icalparameter* const zone = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
        const std::string name = zone ? Given(icalparameter_get_tzid(zone)) : "";
        bool isDefined = !zone;
        for (; !isDefined && component; component = icalcomponent_get_parent(component))
            isDefined = icalcomponent_get_timezone(component, name.c_str()) != nullptr;
        if (isDefined)
            return;
        const auto [known, isNew] = m_known.try_emplace(name);
        if (isNew)
            known->second = SystemZone(name);
        if (known->second.empty())
            icalproperty_remove_parameter_by_kind(property, ICAL_TZID_PARAMETER);
        else
            icalparameter_set_tzid(zone, known->second.c_str());
    }

    std::map<std::string, std::string> m_known; // the system's zones by the file's names
};

} // namespace

Assembly Assemble(std::string_view text)
{
    Assembly result = Assembler(text).Assemble();
    ZoneNaming().Apply(result.root.get());
    return result;
}

} // namespace phnctl
