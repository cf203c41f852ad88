#!/usr/bin/env python3
"""coverage_table.py <root> <lcov export> <JSON export>: what llvm-cov found about src/, as a table by file and a list
of what was not reached. Ends with 1 below the bar: every line, and 98 % of the branches.

How branches are counted: a place in the source where a condition is decided, or a case chosen, has two of them, taken
and not taken. llvm-cov lists the place again for each instantiation of a template, and would ask of every instantiation
what the template as a whole does; here the counts of one place are added up. The way past all cases of a switch is a
branch too, though over an enumeration nothing takes it.

A line that no test can reach says why in a comment at its end, "// never run: <reason>". On a line that opens a block
it speaks for the whole block.
"""
import collections
import json
import os
import re
import sys

LEAST_BRANCHES = 98.0
EXCUSE = re.compile(r"// never run: \S")


def line_counts(lcov):
    counts = collections.defaultdict(dict)
    for entry in lcov:
        if entry.startswith("SF:"):
            path = entry[3:].strip()
        elif entry.startswith("DA:"):
            line, count = entry[3:].split(",")[:2]
            counts[path][int(line)] = int(count)
    return counts


def branch_counts(exported):
    counts = {}
    for file in exported["data"][0]["files"]:
        places = counts[file["filename"]] = collections.defaultdict(lambda: [0, 0])
        for branch in file["branches"]:
            for outcome in (0, 1):
                places[tuple(branch[:2])][outcome] += branch[4 + outcome]
    return counts


def excused_lines(text):
    excused = set()
    for number, line in enumerate(text, 1):
        if EXCUSE.search(line):
            excused.add(number)
            if line.split("//")[0].rstrip().endswith("{"):
                closing = re.match(r"\s*", line).group() + "}"
                while number < len(text) and not text[number].startswith(closing):
                    number += 1
                    excused.add(number)
                excused.add(number + 1)
    return excused


def row(name, lines, branches):
    cells = [f"{reached:7} of {total:5} {100.0 * reached / max(total, 1) if total else 100.0:6.1f} %"
             for reached, total in (lines, branches)]
    return f"{name:32}" + "".join(cells)


def main():
    root = os.path.realpath(sys.argv[1])
    with open(sys.argv[2], encoding="utf-8") as lcov:
        lines = line_counts(lcov)
    with open(sys.argv[3], encoding="utf-8") as exported:
        branches = branch_counts(json.load(exported))

    missed = []
    excuses = 0
    totals = [[0, 0], [0, 0]]
    print(f"{'':32}{'lines reached':>24}{'branches reached':>24}")
    for path in sorted(lines):
        name = os.path.relpath(path, root)
        with open(path, encoding="utf-8") as source:
            text = source.read().splitlines()
        excused = {line for line in excused_lines(text) if lines[path].get(line) == 0}
        excuses += len(excused)
        counted = {line: count for line, count in lines[path].items() if line not in excused}
        missed += [f"{name}:{line}: {text[line - 1].strip()}" for line, count in sorted(counted.items()) if count == 0]
        places = branches.get(path, {})
        for (line, column), outcomes in sorted(places.items()):
            missed += [f"{name}:{line}:{column}: never {outcome}: {text[line - 1].strip()}"
                       for outcome, count in zip(("true", "false"), outcomes) if count == 0]
        figures = ((sum(count > 0 for count in counted.values()), len(counted)),
                   (sum(count > 0 for outcomes in places.values() for count in outcomes), 2 * len(places)))
        print(row(name, *figures))
        for total, figure in zip(totals, figures):
            total[0] += figure[0]
            total[1] += figure[1]
    print(row("all", *totals))

    if missed:
        print("\nnot reached:")
        print("\n".join("  " + miss for miss in missed))
    if excuses:
        print(f"\n{excuses} lines say why they are never run and are not counted")
    (lines_reached, all_lines), (branches_reached, all_branches) = totals
    if all_lines == 0 or lines_reached < all_lines or branches_reached < LEAST_BRANCHES / 100 * all_branches:
        print(f"\nbelow the bar: every line and {LEAST_BRANCHES:g} % of the branches")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
