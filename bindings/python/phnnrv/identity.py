"""Who the handset is."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Identity:
    """Texts and numbers as the handset reports them; only it knows what the `info` fields mean."""

    number: str  # its own telephone number
    esn: str  # electronic serial number: 3 digits manufacturer, 8 digits serial number
    model: str
    info19: int
    info20: str
    info148: str
    info212: str  # a 32-bit value in upper-case hexadecimal
    info216: str
    info238: int
    info242: int
    info246: int
    info250: int
    info251: int
    info253: str
