"""Builds a small database from nothing and writes it as a DBC file: build_database.py TARGET"""

from __future__ import annotations

import sys

import tabrin
from tabrin import MultiplexKind, Signal, ValueDescription, ValueType

WEATHER = tabrin.Database(
    messages=(
        tabrin.Message(
            id=0x120,
            name="Weather",
            dlc=8,
            transmitter="Roof",
            comment="Once a second",
            signals=(
                Signal(
                    "Temperature", 0, 12, value_type=ValueType.SIGNED, factor=0.1, minimum=-60, maximum=60, unit="°C"
                ),
                Signal(
                    "Sky",
                    12,
                    2,
                    maximum=3,
                    receivers=("Display", "Logger"),
                    value_descriptions=(
                        ValueDescription(0, "clear"),
                        ValueDescription(1, "cloudy"),
                        ValueDescription(3, "no idea"),
                    ),
                ),
            ),
        ),
        tabrin.Message(
            id=0x80000000 | 0x18FF0001,
            name="Wind",
            dlc=8,
            transmitter="Roof",
            signals=(
                Signal("Page", 0, 8, maximum=1, multiplex_kind=MultiplexKind.MULTIPLEXOR),
                Signal(
                    "Speed", 8, 32, value_type=ValueType.FLOAT, unit="m/s", multiplex_kind=MultiplexKind.MULTIPLEXED
                ),
                Signal(
                    "Direction of wind", 8, 9, maximum=359, multiplex_kind=MultiplexKind.MULTIPLEXED, multiplex_value=1
                ),
            ),
        ),
    ),
    can_fd=True,
)


def main() -> int:
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        WEATHER.write(sys.argv[1], tabrin.MessageOrder.NAME)
    except tabrin.TabrinError as error:
        print(error, file=sys.stderr)
        return 1
    print(f"{sys.argv[1]}: {len(WEATHER)} messages")
    return 0


if __name__ == "__main__":
    sys.exit(main())
