"""What can be set on the handset, and how much its phonebook holds."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Parameters:
    """The three phone parameters, whose meaning only the handset knows."""

    parameter1: int  # 0 to 255 when written
    parameter2: int  # 0 to 255 when written
    parameter3: int  # 0 to 65535


@dataclass(frozen=True)
class FieldSizes:
    """Sizes of the phonebook, as the handset reports them."""

    field_size1: int
    field_size2: int
    field_size3: int
    field_size4: int
    field_size5: int
    field_size6: int
    field_size7: int
    field_size8: int
    field_size9: int
    field_size10: int
    field_size11: int
