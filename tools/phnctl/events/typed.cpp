#include "phnctl/events/typed.h"

#include "phnctl/text/content_line.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <regex>
#include <sstream>
#include <string_view>
#include <vector>

namespace phnctl {

namespace {

constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kDay = 86400;
constexpr std::string_view kWeekdays[] = {"MONDAY", "TUESDAY", "WEDNESDAY", "THURSDAY", "FRIDAY", "SATURDAY", "SUNDAY"};

[[noreturn]] void RefuseSpan(const std::string& text)
{
    throw Failure(kUsage, fmt::format("'{}' is no time of an event; allowed: a day (2009-03-15, today, tomorrow, fri), "
                                      "then a time (18:30), then how long (45m, 1h30, 2d); without a time, days (2d)",
                                      Printable(text)));
}

[[noreturn]] void RefuseRule(const std::string& text)
{
    throw Failure(kUsage,
                  fmt::format("--repeat '{}': allowed are daily, weekly, weekly mon,wed, monthly and yearly, and "
                              "behind it 'until 2009-06-01' or 'x10'",
                              Printable(text)));
}

std::vector<std::string> WordsOf(const std::string& text)
{
    std::istringstream stream(UpperCase(text));
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

std::optional<std::smatch> Matched(const std::string& text, const char* pattern)
{
    std::smatch match;
    return std::regex_match(text, match, std::regex(pattern)) ? std::optional(match) : std::nullopt;
}
std::optional<std::smatch> Matched(std::string&& text, const char* pattern) = delete; // the match points into it

// From 0, Monday, by three letters of its name or more.
std::optional<int> WeekdayOf(const std::string& word)
{
    for (int day = 0; day < 7; ++day)
        if (word.size() >= 3 && kWeekdays[day].starts_with(word))
            return day;
    return std::nullopt;
}

EventTime BeginOfDay(EventTime time)
{
    time.hour = time.minute = time.second = 0;
    return time;
}

std::optional<EventTime> DateOf(const std::string& word)
{
    const auto match = Matched(word, R"((\d{4})-(\d\d)-(\d\d))");
    return match ? ParseEventTime((*match)[1].str() + (*match)[2].str() + (*match)[3].str() + "T000000") : std::nullopt;
}

std::optional<EventTime> DayOf(const std::string& word, const EventTime& now)
{
    const std::int64_t today = SecondsOf(BeginOfDay(now));
    if (word == "TODAY" || word == "TOMORROW")
        return TimeOf(today + (word == "TODAY" ? 0 : kDay));
    const auto weekday = WeekdayOf(word);
    if (!weekday)
        return DateOf(word);
    const std::int64_t ahead = ((*weekday - (today / kDay + 3)) % 7 + 7) % 7; // 1970 began on a Thursday
    if (ahead == 0)
        throw Failure(kUsage, fmt::format("{} is today, so '{}' may mean two days; allowed: today, or the date",
                                          Shown(now).substr(0, 3), word));
    return TimeOf(today + ahead * kDay);
}

// Minutes; 0 for what is no length.
std::int64_t LengthOf(const std::string& word)
{
    const auto number = [](const std::ssub_match& digits) { return digits.matched ? std::stol(digits.str()) : 0; };
    if (const auto match = Matched(word, R"((\d{1,3})D)"))
        return number((*match)[1]) * kDay / kMinute;
    if (const auto match = Matched(word, R"((\d{1,3})H(?:([0-5]?\d)M?)?)"))
        return number((*match)[1]) * 60 + number((*match)[2]);
    if (const auto match = Matched(word, R"((\d{1,4})M)"))
        return number((*match)[1]);
    return 0;
}

} // namespace

TypedSpan ParseTypedSpan(const std::string& text, const EventTime& now)
{
    std::vector<std::string> words = WordsOf(text);
    const auto day = words.empty() ? std::nullopt : DayOf(words.front(), now);
    if (!day)
        RefuseSpan(text);
    TypedSpan span{*day, *day};
    words.erase(words.begin());
    const auto clock = words.empty() ? std::nullopt : Matched(words.front(), R"((\d?\d):(\d\d))");
    if (clock) {
        span.start.hour = static_cast<unsigned>(std::stoul((*clock)[1].str()));
        span.start.minute = static_cast<unsigned>(std::stoul((*clock)[2].str()));
        words.erase(words.begin());
    }
    const bool isAllDay = !clock && (words.empty() || words == std::vector<std::string>{"ALL", "DAY"});
    const std::int64_t length = isAllDay ? kDay / kMinute : words.size() == 1 ? LengthOf(words.front()) : 0;
    const bool isRead = isAllDay || words.empty() || length != 0;
    if (!isRead || !Exists(span.start) || (!clock && length * kMinute % kDay != 0))
        RefuseSpan(text);
    span.end = TimeOf(SecondsOf(span.start) + (length - (clock ? 0 : 1)) * kMinute); // days end with their last minute
    if ((clock ? span.start : span.end) < now)
        throw Failure(kUsage, fmt::format("{} is over; allowed is what is to come", Shown(span.start)));
    return span;
}

EventRule ParseTypedRule(const std::string& text, const EventTime& start)
{
    const std::string upper = UpperCase(OneLine(text));
    const auto match = Matched(upper, R"((DAILY|MONTHLY|YEARLY|WEEKLY((?:[ ,]+[A-Z]+DAY|[ ,]+[A-Z]{3})*?))"
                                      R"()(?: +X *([1-9]\d{0,3})| +UNTIL +(\S+))?)");
    if (!match)
        RefuseRule(text);
    std::string rule = "FREQ=" + (*match)[1].str().substr(0, (*match)[1].str().find_first_of(" ,"));
    std::string days = (*match)[2].str();
    std::ranges::replace(days, ',', ' ');
    const char* separator = ";BYDAY=";
    for (const std::string& word : WordsOf(days)) {
        const auto day = WeekdayOf(word);
        if (!day)
            RefuseRule(text);
        rule += separator + std::string(kWeekdays[*day].substr(0, 2));
        separator = ",";
    }
    if ((*match)[3].matched)
        rule += ";COUNT=" + (*match)[3].str();
    if ((*match)[4].matched) {
        const auto until = DateOf((*match)[4].str());
        if (!until || *until < BeginOfDay(start))
            RefuseRule(text);
        rule += ";UNTIL=" + EventTimeText(*until).substr(0, 8);
    }
    return ParseRule(rule);
}

} // namespace phnctl
