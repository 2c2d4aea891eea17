"""The calendar."""

from dataclasses import dataclass

from ._records import PHN_EVENT_RECORD
from ._text_store import TextStore


@dataclass(frozen=True)
class Event:
    index: int
    icalendar: str  # one VEVENT inside a VCALENDAR; CR LF line ends


class Events(TextStore[Event]):
    """Iterate it for all events. The indexes are the handset's."""

    _noun = "Event"
    _record = PHN_EVENT_RECORD
    _text_field = "pCalendarData"

    def _entry(self, index: int, text: str) -> Event:
        return Event(index, text)
