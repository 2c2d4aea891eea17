"""Message PDUs (TIA/EIA-637 transport layer): as handsets give them, and as they take them to be sent."""

from collections.abc import Callable, Iterator
from dataclasses import dataclass, replace
from datetime import datetime
from enum import IntEnum

_CELLULAR_MESSAGING = b"\x10\x02"
_DIGITS = "?1234567890*#???"  # by their 4-bit codes
_LONGEST_NUMBER = 36
_DELIVER = 1  # message types
_SUBMIT = 2
_SEVEN_BIT_ASCII = 2  # message encoding


class _Parameter(IntEnum):
    TELESERVICE = 0x00
    ORIGINATING_ADDRESS = 0x02
    DESTINATION_ADDRESS = 0x04
    BEARER_DATA = 0x08


class _Subparameter(IntEnum):
    MESSAGE_IDENTIFIER = 0x00
    USER_DATA = 0x01
    TIME_STAMP = 0x03
    PRIORITY = 0x08
    REPLY_OPTION = 0x0A
    CALLBACK_NUMBER = 0x0E


@dataclass(frozen=True)
class Content:
    """What a message says. Nothing stands for what the PDU does not hold, or holds in a form that is not read here."""

    sender: str | None = None
    recipient: str | None = None
    text: str | None = None
    time: datetime | None = None  # local time
    priority: int | None = None  # 0 normal, 1 interactive, 2 urgent, 3 emergency
    report: bool | None = None  # a delivery acknowledgement is wanted
    callback: str | None = None  # call-back number


class _Bits:
    """Fields of a few bits, most significant bit first."""

    def __init__(self, data: bytes) -> None:
        self._value = int.from_bytes(data, "big")
        self._left = 8 * len(data)

    def take(self, count: int) -> int:
        if count > self._left:
            raise ValueError("an item of the PDU is too short")
        self._left -= count
        return self._value >> self._left & (1 << count) - 1

    def take_codes(self, width: int) -> bytes:
        return bytes(self.take(width) for _ in range(self.take(8)))


def _pack(*fields: tuple[int, int]) -> bytes:
    """Fields of (value, bits), filled up with zero bits to whole bytes."""
    if any(value >> width for value, width in fields):
        raise ValueError("a number does not fit its field of the PDU")
    bits = "".join(f"{value:0{width}b}" for value, width in fields)
    bits += "0" * (-len(bits) % 8)
    return int(bits, 2).to_bytes(len(bits) // 8, "big")


def _counted(codes: bytes, width: int) -> Iterator[tuple[int, int]]:
    yield len(codes), 8
    for code in codes:
        yield code, width


def _item(id: int, data: bytes) -> bytes:
    return bytes([id, len(data)]) + data


def _items(data: bytes) -> dict[int, bytes]:
    """By identifier; the first of several counts, as the library reads them."""
    items: dict[int, bytes] = {}
    while data:
        if len(data) < 2 or len(data) < 2 + data[1]:
            raise ValueError("an item of the PDU is cut off")
        items.setdefault(data[0], data[2 : 2 + data[1]])
        data = data[2 + data[1] :]
    return items


def _read_number(data: bytes, encoding: str, is_address: bool) -> str:
    bits = _Bits(data)
    is_text = bits.take(1)
    is_network_address = is_address and bits.take(1)
    if not is_text:
        return "".join(_DIGITS[code] for code in bits.take_codes(4))
    bits.take(3 if is_network_address else 7)  # type, and a telephone number's plan
    return bits.take_codes(8).decode(encoding, "replace")


def _read_text(data: bytes) -> str | None:
    bits = _Bits(data)
    return bits.take_codes(7).decode("ascii") if bits.take(5) == _SEVEN_BIT_ASCII else None


def _read_time(data: bytes) -> datetime:
    try:
        year, month, day, hour, minute, second = (int(f"{byte:02x}") for byte in data[:6])
        return datetime(year + (1900 if year >= 96 else 2000), month, day, hour, minute, second)
    except ValueError:
        raise ValueError("the time stamp of the PDU is no time") from None


def decode(pdu: bytes, encoding: str = "cp1252") -> Content:
    """Reads a PDU of either direction. `encoding` is that of addresses that are text: the ANSI code page.

    Raises ValueError for what is no point-to-point message, or not whole.
    """
    if pdu[:1] != b"\0":
        raise ValueError("the PDU is not point-to-point")
    parameters = _items(pdu[1:])
    subparameters = _items(parameters.get(_Parameter.BEARER_DATA, b""))
    content = Content()
    readers: list[tuple[dict[int, bytes], int, str, Callable[[bytes], object]]] = [
        (parameters, _Parameter.ORIGINATING_ADDRESS, "sender", lambda data: _read_number(data, encoding, True)),
        (parameters, _Parameter.DESTINATION_ADDRESS, "recipient", lambda data: _read_number(data, encoding, True)),
        (subparameters, _Subparameter.USER_DATA, "text", _read_text),
        (subparameters, _Subparameter.TIME_STAMP, "time", _read_time),
        (subparameters, _Subparameter.PRIORITY, "priority", lambda data: _Bits(data).take(2)),
        (subparameters, _Subparameter.REPLY_OPTION, "report", lambda data: bool(_Bits(data).take(2) & 1)),
        (subparameters, _Subparameter.CALLBACK_NUMBER, "callback", lambda data: _read_number(data, encoding, False)),
    ]
    for items, id, field, read in readers:
        if id in items:
            content = replace(content, **{field: read(items[id])})
    return content


def _digits(number: str) -> bytes:
    if not 1 <= len(number) <= _LONGEST_NUMBER or any(digit not in _DIGITS[1:13] for digit in number):
        raise ValueError(f"{number!r} is no number of 1 to {_LONGEST_NUMBER} digits, * and #")
    return bytes(map(_DIGITS.index, number))


def _bearer_data(content: Content, type: int, id: int) -> bytes:
    data = _item(_Subparameter.MESSAGE_IDENTIFIER, _pack((type, 4), (id, 16), (0, 4)))
    if content.priority is not None:
        data += _item(_Subparameter.PRIORITY, _pack((content.priority, 2)))
    if content.report is not None:
        data += _item(_Subparameter.REPLY_OPTION, _pack((content.report, 2)))
    if content.time is not None:
        data += _item(_Subparameter.TIME_STAMP, bytes.fromhex(f"{content.time:%y%m%d%H%M%S}"))
    if content.callback is not None:
        data += _item(_Subparameter.CALLBACK_NUMBER, _pack((0, 1), *_counted(_digits(content.callback), 4)))
    if content.text is not None:
        data += _item(_Subparameter.USER_DATA, _user_data(content.text, 253 - len(data)))
    return data


def _user_data(text: str, room: int) -> bytes:
    if any(not " " <= character <= "~" for character in text):
        raise ValueError("the text holds something else than printable 7-bit ASCII")
    most = min((8 * room - 14) // 7, 255)
    if len(text) > most:
        raise ValueError(f"the text has {len(text)} characters; {most} fit in this message")
    # As the library does: a byte more when the bits end with a byte.
    return _pack((_SEVEN_BIT_ASCII, 5), *_counted(text.encode("ascii"), 7), (0, 1))


def encode(content: Content, encoding: str = "cp1252") -> bytes:
    """With a recipient the PDU for Messages.send and Messages.save, which carries no time; with a sender the one that a
    handset gives. Numbers have digits, * and #, a sender any text in `encoding`; the text is printable 7-bit ASCII.

    Raises ValueError for what cannot be carried.
    """
    if (content.sender is None) == (content.recipient is None):
        raise ValueError("a message needs either a sender or a recipient")
    if content.recipient is not None and not content.text:
        raise ValueError("a message without a text cannot be sent")
    if content.recipient is not None:
        address = _item(_Parameter.DESTINATION_ADDRESS, _pack((0, 2), *_counted(_digits(content.recipient), 4)))
        bearer_data = _bearer_data(replace(content, time=None), _SUBMIT, 1)
    else:
        sender = (content.sender or "").encode(encoding)
        if len(sender) > _LONGEST_NUMBER:
            raise ValueError(f"the sender is longer than {_LONGEST_NUMBER} characters")
        address = _item(_Parameter.ORIGINATING_ADDRESS, _pack((0b11010, 5), *_counted(sender, 8)))
        bearer_data = _bearer_data(content, _DELIVER, 2)
    head = _item(_Parameter.TELESERVICE, _CELLULAR_MESSAGING)
    return b"\0" + head + address + _item(_Parameter.BEARER_DATA, bearer_data)
