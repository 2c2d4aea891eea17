// The occurrences of a rule, found by libical.
#include "phnctl/events/file.h"
#include "phnctl/events/foreign/libical.h"

#include <memory>

namespace phnctl {

namespace {

constexpr int kMostSteps = 30000; // more than a daily event has days in the handset's years

struct IteratorDeleter
{
    void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};

} // namespace

std::vector<EventTime> Occurrences(const EventTime& start, const EventRule& rule, const EventTime& from,
                                   const EventTime& to, std::size_t limit)
{
    std::vector<EventTime> found;
    icalerror_set_errors_are_fatal(0);
    const std::unique_ptr<icalrecur_iterator, IteratorDeleter> iterator(
        icalrecur_iterator_new(icalrecurrencetype_from_string(rule.Text().c_str()), ToLibical(start)));
    for (int step = 0; iterator && found.size() < limit && step < kMostSteps; ++step) {
        const icaltimetype next = icalrecur_iterator_next(iterator.get());
        const EventTime time = Converted(next);
        if (icaltime_is_null_time(next) || time > to)
            break;
        if (time >= from)
            found.push_back(time);
    }
    return found;
}

} // namespace phnctl
