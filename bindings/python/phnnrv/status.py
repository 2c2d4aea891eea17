"""How the handset is. The numbered fields hold values whose meaning only the handset's model knows."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Battery:
    battery1: int
    battery2: int


@dataclass(frozen=True)
class Network:
    network0: int
    network4: int
    network5: int
    network6: int
    network8: int
    network10: int
    network12: int
    network14: int
    network16: int
    network18: int
    network20: int
    network22: int  # magnitude of a signed value: -85 arrives as 85
    network26: str
    network60: int  # magnitude, likewise
    network64: int


@dataclass(frozen=True)
class Connection:
    connection0: int
    connection4: int
    connection8: int
    connection12: int
    connection16: int
    network_error: int  # why the last call ended: see Handset.network_error_text; 0 for none
    connection18: int


@dataclass(frozen=True)
class Status:
    battery: Battery
    network: Network
    connection: Connection
