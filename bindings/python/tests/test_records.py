"""The records are laid out as the header of the library documents them."""

from __future__ import annotations

import ctypes
import re
from typing import Type

import pytest
from conftest import ROOT

from tabrin import _library, _records

RECORDS: list[Type[ctypes.Structure]] = [
    _records.CanErrorData,
    _records.DatabaseInfo,
    _records.CanMessageData,
    _records.CanSignalData,
    _records.CanSignalEnumData,
]


def header() -> str:
    return (ROOT / "include" / "tabrin.h").read_text()


@pytest.mark.parametrize("record", RECORDS, ids=[record.__name__ for record in RECORDS])
def test_offsets_and_size_are_those_of_the_header(record: Type[ctypes.Structure]) -> None:
    pattern = r"\((\d+) bytes\)[^/]*\*/\s*typedef struct " + record.__name__ + r" \{\n(.*?)\n\} " + record.__name__
    found = re.search(pattern, header(), re.DOTALL)
    assert found is not None
    fields = re.findall(r"^    \w+ (\w+)(?:\[\d+\])?; +/\* +(\d+)  ", found[2], re.MULTILINE)
    assert len(fields) == len(record._fields_)
    assert {name: int(offset) for name, offset in fields} == {
        name: getattr(record, name).offset for name, *_ in record._fields_
    }
    assert ctypes.sizeof(record) == int(found[1])


def test_every_function_of_the_header_is_declared() -> None:
    functions = re.findall(r"^TABRIN_API \w+ (\w+)\(", header(), re.MULTILINE)
    assert len(functions) == 17
    assert sorted(functions) == sorted(_library._PROTOTYPES)


def test_a_field_elsewhere_is_noticed() -> None:
    with pytest.raises(ImportError, match="DatabaseInfo.canFd is at byte 4 here, expected 5"):
        _records.check_layouts({_records.DatabaseInfo: (8, {"protocolType": 0, "canFd": 5})})


def test_another_size_is_noticed() -> None:
    with pytest.raises(ImportError, match="CanSignalData has 944 bytes here, expected 940"):
        _records.check_layouts({_records.CanSignalData: (940, {})})
