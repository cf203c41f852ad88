"""Writes a DBC file anew, with its messages in another order: convert.py SOURCE TARGET [id|name|file]"""

from __future__ import annotations

import sys

import tabrin

ORDERS = {
    "id": tabrin.MessageOrder.IDENTIFIER,
    "name": tabrin.MessageOrder.NAME,
    "file": tabrin.MessageOrder.DATABASE,
}


def main() -> int:
    arguments = sys.argv[1:]
    if len(arguments) not in (2, 3) or (len(arguments) == 3 and arguments[2] not in ORDERS):
        print(__doc__, file=sys.stderr)
        return 2
    order = ORDERS[arguments[2] if len(arguments) == 3 else "file"]
    try:
        faults = tabrin.convert(arguments[0], arguments[1], order)
    except tabrin.TabrinError as error:
        print(error, file=sys.stderr)
        return 1
    for fault in faults:
        print(f"left out: {fault}")
    print(f"{arguments[1]} is written")
    return 0


if __name__ == "__main__":
    sys.exit(main())
