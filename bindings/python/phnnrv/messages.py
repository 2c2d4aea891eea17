"""Short messages. Their contents are PDUs, which phnnrv.pdu reads and writes."""

import ctypes
from dataclasses import dataclass

from ._listing import Listing
from ._records import PHN_SMS_MESSAGE
from .errors import ErrorCode

MESSAGE_BOXES = range(5)  # what each holds is the handset's

_PDU_SIZE = 512  # bytes; holds any PDU


@dataclass(frozen=True)
class Message:
    box: int
    index: int  # the handset's, 0 to 65535
    pdu: bytes  # TIA/EIA-637 transport layer


def _record_of(pdu: bytes) -> PHN_SMS_MESSAGE:
    data = (ctypes.c_uint8 * len(pdu)).from_buffer_copy(pdu)
    return PHN_SMS_MESSAGE(pIS637Data=ctypes.cast(data, ctypes.POINTER(ctypes.c_uint8)), uSizeofData=len(pdu))


def _checked(index: int) -> int:
    if not 0 <= index <= 0xFFFF:
        raise OverflowError(f"the message index {index} is out of range")
    return index


class Messages(Listing[Message]):
    """The message boxes, MESSAGE_BOXES."""

    _noun = "Message"
    _end = ErrorCode.PHN_ERROR_NO_MORE_MESSAGES

    def _step(self, which: int, function: str, *selector: int) -> Message | None:
        record = _record_of(bytes(_PDU_SIZE))
        if self._is_over(self._api.call(function, *selector, ctypes.byref(record)), function):
            return None
        return Message(which, record.wIndex, ctypes.string_at(record.pIS637Data, record.uSizeofData))

    def send(self, pdu: bytes) -> int:
        """Sends a PDU that pdu.encode made for a recipient. Returns the message's index."""
        return self._put("PHN_SendMessage", pdu)

    def save(self, pdu: bytes) -> int:
        """Stores a PDU without sending it. Returns the message's index."""
        return self._put("PHN_SaveMessage", pdu)

    def _put(self, function: str, pdu: bytes) -> int:
        record = _record_of(pdu)
        self._do(function, ctypes.byref(record))
        return int(record.wIndex)

    def delete(self, index: int) -> None:
        """Raises Error, PHN_ERROR_MESSAGE_NOT_FOUND."""
        self._do("PHN_DeleteMessage", _checked(index))

    def clear(self, box: int) -> None:
        """Deletes all messages of a box; may take minutes."""
        self._do("PHN_DeleteAllMessages", box)

    def mark(self, index: int, read: bool) -> None:
        """Marks a message as read or unread. Raises Error, PHN_ERROR_MESSAGE_NOT_FOUND."""
        self._do("PHN_SetMessageStatus", _checked(index), read)
