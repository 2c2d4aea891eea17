"""A handset through the PHNNRV library.

    import phnnrv

    with phnnrv.Handset() as handset:
        print(handset.identity().model)
        for contact in handset.contacts:
            print(contact.vcard)
"""

from . import pdu
from .calls import CALL_LISTS, Call
from .changes import Change
from .contacts import Contact
from .errors import Error, ErrorCode
from .events import Event
from .handset import Handset
from .identity import Identity
from .messages import MESSAGE_BOXES, Message
from .parameters import FieldSizes, Parameters
from .status import Battery, Connection, Network, Status

__all__ = [
    "CALL_LISTS",
    "MESSAGE_BOXES",
    "Battery",
    "Call",
    "Change",
    "Connection",
    "Contact",
    "Error",
    "ErrorCode",
    "Event",
    "FieldSizes",
    "Handset",
    "Identity",
    "Message",
    "Network",
    "Parameters",
    "Status",
    "pdu",
]
