#include "phnctl/contacts/vcard_file.h"

#include <utility>

namespace phnctl {

namespace {

bool IsMark(const ContentLine& line, std::string_view name)
{
    const std::string value = UpperCase(line.value);
    return line.name == name && value.substr(0, value.find_last_not_of(" \t") + 1) == "VCARD";
}

class Collector
{
public:
    void Take(ContentLine& line)
    {
        if (IsMark(line, "BEGIN"))
            Begin(line);
        else if (IsMark(line, "END"))
            End(line);
        else if (m_depth == 0)
            Complain(line, "the line belongs to no vCard");
        else if (m_depth == 1)
            Add(line);
    }

    std::vector<VCard> Finish()
    {
        if (m_depth != 0)
            Break("the vCard has no END:VCARD");
        return std::move(m_cards);
    }

private:
    void Begin(const ContentLine& line)
    {
        if (m_depth != 0 && !m_awaitsAgent && m_depth == 1) {
            Break("the vCard has no END:VCARD before the next one begins");
            m_depth = 0;
        }
        m_awaitsAgent = false;
        if (m_depth++ == 0)
            m_cards.emplace_back().line = line.line;
    }

    void End(const ContentLine& line)
    {
        if (m_depth == 0)
            return Complain(line, "END:VCARD without a BEGIN:VCARD");
        --m_depth;
    }

    void Add(ContentLine& line)
    {
        m_awaitsAgent = line.name == "AGENT" && line.value.find_first_not_of(" \t") == std::string::npos;
        if (line.name != "VERSION")
            m_cards.back().properties.push_back(std::move(line));
    }

    void Break(const char* problem)
    {
        VCard& card = m_cards.back();
        if (card.problem.empty()) {
            card.problem = problem;
            card.problemLine = card.line;
        }
    }

    // Consecutive lines outside count once.
    void Complain(const ContentLine& line, const char* problem)
    {
        const bool isNext = !m_cards.empty() && m_cards.back().problem == problem && m_cards.back().properties.empty();
        if (isNext)
            return;
        VCard& card = m_cards.emplace_back();
        card.line = line.line;
        card.problem = problem;
        card.problemLine = line.line;
    }

    std::vector<VCard> m_cards;
    std::size_t m_depth = 0;
    bool m_awaitsAgent = false;
};

} // namespace

std::vector<VCard> ReadVCards(std::string_view text)
{
    Collector collector;
    ContentLineReader reader(text);
    ContentLine line;
    while (reader.Next(line))
        collector.Take(line);
    return collector.Finish();
}

} // namespace phnctl
