"""Lists the signals of a DBC file as a table: list_signals.py FILE"""

from __future__ import annotations

import sys

import tabrin


def rows(database: tabrin.Database) -> list[tuple[str, ...]]:
    table: list[tuple[str, ...]] = [("id", "message", "signal", "bits", "factor", "offset", "unit")]
    for message in database:
        for signal in message:
            bits = f"{signal.start_bit}|{signal.length}"
            scale = (f"{signal.factor:.10g}", f"{signal.offset:.10g}")
            table.append((f"{message.frame_id:x}", message.name, signal.name, bits, *scale, signal.unit))
    return table


def main() -> int:
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        database = tabrin.read(sys.argv[1])
    except tabrin.TabrinError as error:
        print(error, file=sys.stderr)
        return 1
    table = rows(database)
    widths = [max(map(len, column)) for column in zip(*table)]
    for row in table:
        print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())
    for fault in database.errors:
        print(f"left out: {fault}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
