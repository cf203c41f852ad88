"""The records that cross the border, as include/tabrin.h describes them."""

from __future__ import annotations

import ctypes
from typing import Type

_u32 = ctypes.c_uint32
_f64 = ctypes.c_double


class CanErrorData(ctypes.Structure):
    _fields_ = [("code", _u32), ("line", _u32), ("text", ctypes.c_char * 256)]


class DatabaseInfo(ctypes.Structure):
    _fields_ = [("protocolType", _u32), ("canFd", _u32)]


class CanMessageData(ctypes.Structure):
    _fields_ = [
        ("id", _u32),
        ("identifierName", ctypes.c_char * 33),
        ("reserved37", ctypes.c_uint8 * 3),
        ("dlc", _u32),
        ("name", ctypes.c_char * 256),
        ("transmitter", ctypes.c_char * 33),
        ("reserved333", ctypes.c_uint8 * 3),
        ("numSignals", _u32),
        ("reserved340", ctypes.c_uint8 * 4),
        ("comment", ctypes.c_char * 256),
        ("sendType", ctypes.c_char * 33),
        ("reserved633", ctypes.c_uint8 * 3),
        ("cycleTime", _u32),
    ]


class CanSignalData(ctypes.Structure):
    _fields_ = [
        ("identifierName", ctypes.c_char * 33),
        ("name", ctypes.c_char * 256),
        ("unit", ctypes.c_char * 33),
        ("receivers", ctypes.c_char * 256),
        ("comment", ctypes.c_char * 256),
        ("reserved834", ctypes.c_uint8 * 2),
        ("multiplexKind", _u32),
        ("multiplexValue", _u32),
        ("startBit", _u32),
        ("length", _u32),
        ("byteOrder", _u32),
        ("valueType", _u32),
        ("reserved860", ctypes.c_uint8 * 4),
        ("factor", _f64),
        ("offset", _f64),
        ("minimum", _f64),
        ("maximum", _f64),
        ("numValueDescriptions", _u32),
        ("startValue", _u32),
        ("inactiveValue", _u32),
        ("unitAsWritten", ctypes.c_char * 33),
        ("reserved941", ctypes.c_uint8 * 3),
    ]


class CanSignalEnumData(ctypes.Structure):
    _fields_ = [("value", ctypes.c_int32), ("text", ctypes.c_char * 256)]


# Size of each record and offset of each field, as the header gives them. They are written down a second time because
# ctypes computes its own from the declarations above, by the rules of the machine that this runs on.
DOCUMENTED: dict[Type[ctypes.Structure], tuple[int, dict[str, int]]] = {
    CanErrorData: (264, {"code": 0, "line": 4, "text": 8}),
    DatabaseInfo: (8, {"protocolType": 0, "canFd": 4}),
    CanMessageData: (
        640,
        {
            "id": 0,
            "identifierName": 4,
            "reserved37": 37,
            "dlc": 40,
            "name": 44,
            "transmitter": 300,
            "reserved333": 333,
            "numSignals": 336,
            "reserved340": 340,
            "comment": 344,
            "sendType": 600,
            "reserved633": 633,
            "cycleTime": 636,
        },
    ),
    CanSignalData: (
        944,
        {
            "identifierName": 0,
            "name": 33,
            "unit": 289,
            "receivers": 322,
            "comment": 578,
            "reserved834": 834,
            "multiplexKind": 836,
            "multiplexValue": 840,
            "startBit": 844,
            "length": 848,
            "byteOrder": 852,
            "valueType": 856,
            "reserved860": 860,
            "factor": 864,
            "offset": 872,
            "minimum": 880,
            "maximum": 888,
            "numValueDescriptions": 896,
            "startValue": 900,
            "inactiveValue": 904,
            "unitAsWritten": 908,
            "reserved941": 941,
        },
    ),
    CanSignalEnumData: (260, {"value": 0, "text": 4}),
}


def check_layouts(documented: dict[Type[ctypes.Structure], tuple[int, dict[str, int]]] = DOCUMENTED) -> None:
    """Raises ImportError where a record is laid out other than documented."""
    for record, (size, offsets) in documented.items():
        if ctypes.sizeof(record) != size:
            raise ImportError(f"tabrin: {record.__name__} has {ctypes.sizeof(record)} bytes here, expected {size}")
        for field, offset in offsets.items():
            actual = getattr(record, field).offset
            if actual != offset:
                raise ImportError(f"tabrin: {record.__name__}.{field} is at byte {actual} here, expected {offset}")


check_layouts()
