#include "phnctl/commands/watch/view.h"

#include "phnctl/cli/print.h"
#include "phnctl/text/iso_time.h"
#include "phnctl/text/table.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <fmt/chrono.h>

namespace phnctl {

namespace {

std::string LineOf(const std::string& name, const std::string& text, std::time_t now)
{
    return fmt::format("{:%H:%M:%S}  {:<12}  {}", fmt::localtime(now), name, Printable(text));
}

// All of a section in one line.
std::string ValuesOf(const Section& section)
{
    std::string text;
    for (const Field& field : section.fields)
        if (!field.label.empty())
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", field.label, field.shown);
    return text;
}

class JsonLines final : public WatchView
{
    void Draw(const WatchEvent& event, std::time_t now) override
    {
        Section head{"", "", {{"event", "", event.name}, {"time", "", IsoTime(now)}}};
        head.fields.insert(head.fields.end(), event.fields.begin(), event.fields.end());
        Report report{{head}};
        report.sections.insert(report.sections.end(), event.sections.begin(), event.sections.end());
        fmt::print("{}\n", WriteJson(ToJson(report)));
    }
};

class TextLines final : public WatchView
{
    void Draw(const WatchEvent& event, std::time_t now) override
    {
        fmt::print("{}\n", LineOf(event.name, event.text, now));
        if (event.sections.size() > 1) // a handset that has come: its first values, of which others tell the changes
            for (const Section& section : event.sections)
                if (!section.title.empty())
                    fmt::print("{}\n", LineOf(section.key, ValuesOf(section), now));
    }
};

// The status as last known, and under it the last events.
class Screen final : public WatchView
{
    static constexpr std::size_t kKeptEvents = 100;
    static constexpr std::size_t kWantedEvents = 6; // for which the status is shown in fewer lines
    static constexpr std::size_t kFewEvents = 2;    // that a terminal shows on which it fits in no form

    void Draw(const WatchEvent& event, std::time_t now) override
    {
        for (const Section& section : event.sections)
            Remember(section);
        if (event.effect == Effect::Present)
            m_state = "connected";
        if (event.effect == Effect::Missing)
            m_state = event.name + ": " + event.text;
        m_events.push_back(LineOf(event.name, event.text, now));
        if (m_events.size() > kKeptEvents)
            m_events.pop_front();
        Redraw();
    }

    void Finish() override { fmt::print("\n"); } // below what the terminal shows of Ctrl-C

    void Remember(const Section& section)
    {
        const auto known =
            std::find_if(m_status.begin(), m_status.end(), [&](const Section& old) { return old.key == section.key; });
        if (known == m_status.end())
            m_status.push_back(section);
        else
            *known = section;
    }

    void Redraw()
    {
        const unsigned width = std::max(host::TerminalWidth(stdout), 20u);
        const std::size_t room = std::max(host::TerminalHeight(stdout), 4u);
        std::vector<std::string> lines = SplitLines(ToText(Shown(), width - 1));
        if (lines.size() + 1 + kWantedEvents > room)
            lines = SplitLines(ToText(Compact(), width - 1));
        lines.emplace_back();
        const std::size_t left = room - std::min(lines.size(), room - kFewEvents);
        const std::size_t forEvents = std::min(m_events.size(), left);
        lines.resize(std::min(lines.size(), room - forEvents));
        for (auto line = m_events.end() - static_cast<std::ptrdiff_t>(forEvents); line != m_events.end(); ++line)
            lines.push_back(*line);
        // The cursor stays on the last line, so that every line of the terminal can be used.
        std::string out = m_linesAbove ? fmt::format("\r\033[{}A\033[J", m_linesAbove) : "\r\033[J";
        for (std::size_t i = 0; i < lines.size(); ++i)
            out += (i ? "\n" : "") + Fitted(lines[i], width - 1);
        m_linesAbove = lines.size() - 1;
        fmt::print("{}", out);
    }

    // What has no title of its own stands together, under the state.
    Report Shown() const
    {
        Report shown{{{"", "", {{"", "State", m_state}}}}};
        for (const Section& section : m_status) {
            std::vector<Field>& head = shown.sections.front().fields;
            if (section.title.empty())
                head.insert(head.end(), section.fields.begin(), section.fields.end());
            else
                shown.sections.push_back(section);
        }
        return shown;
    }

    // The same with the values of a section behind each other.
    Report Compact() const
    {
        Report shown = Shown();
        std::vector<Field>& head = shown.sections.front().fields;
        for (std::size_t i = 1; i < shown.sections.size(); ++i)
            head.emplace_back("", shown.sections[i].title, ValuesOf(shown.sections[i]));
        shown.sections.resize(1);
        return shown;
    }

    static std::vector<std::string> SplitLines(const std::string& text)
    {
        std::vector<std::string> lines;
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = text.find('\n', begin);
            lines.push_back(text.substr(begin, end - begin));
            begin = end + 1;
        }
        return lines;
    }

    std::string m_state;
    std::vector<Section> m_status;
    std::deque<std::string> m_events;
    std::size_t m_linesAbove = 0; // the cursor's
};

} // namespace

void WatchView::Show(const WatchEvent& event)
{
    const std::lock_guard lock(m_mutex);
    if (m_closed)
        return;
    Draw(event, std::time(nullptr));
    FlushOutput();
}

void WatchView::Close()
{
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    Finish();
    FlushOutput();
}

std::unique_ptr<WatchView> MakeWatchView(const Options& options)
{
    if (options.json)
        return std::make_unique<JsonLines>();
    if (host::TerminalWidth(stdout))
        return std::make_unique<Screen>();
    return std::make_unique<TextLines>();
}

} // namespace phnctl
