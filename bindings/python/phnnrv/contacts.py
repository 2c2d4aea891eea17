"""The phonebook."""

import ctypes
from dataclasses import dataclass

from ._records import PHN_CONTACT_RECORD, PHN_FIELD_SIZES, PHN_PICTURE_ID
from ._text_store import TextStore
from .parameters import FieldSizes


@dataclass(frozen=True)
class Contact:
    index: int
    vcard: str  # version 3.0 with the properties that phnnrv.h lists; CR LF line ends


class Contacts(TextStore[Contact]):
    """Iterate it for all contacts. The host chooses the indexes."""

    _noun = "Contact"
    _record = PHN_CONTACT_RECORD
    _text_field = "pContactData"

    def _entry(self, index: int, text: str) -> Contact:
        return Contact(index, text)

    def field_sizes(self) -> FieldSizes:
        return self._api.read(FieldSizes, "PHN_GetFieldSizes", PHN_FIELD_SIZES())

    def picture_name(self, id: int) -> str:
        """The display name of an X-PHN-PICTURE-ID."""
        return self._display_name("PHN_GetPictureID", id)

    def ringer_name(self, id: int) -> str:
        """The display name of an X-PHN-RINGER-ID."""
        return self._display_name("PHN_GetRingerID", id)

    def group_name(self, id: int) -> str:
        """The display name of an X-PHN-GROUP-ID."""
        return self._display_name("PHN_GetGroup", id)

    def _display_name(self, function: str, id: int) -> str:
        record = PHN_PICTURE_ID()
        self._api.do(function, id, ctypes.byref(record))
        return self._api.decode(record.szName)
