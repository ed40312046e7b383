#!/usr/bin/env python3
"""Summarises gcov files: coverage of the sources under a directory.

Usage: coverage_report.py SOURCE_DIR FILE.gcov...
Counts of one source seen through several objects (a header) are merged: a
line ran if it ran in any. For each source under SOURCE_DIR: its executable
and unrun line counts and the functions none of whose lines ran (a function
starts at a line 'Type Class::name(' in the first column). Worst first, then
the total.
"""
import re
import sys

DEFINITION = re.compile(r"^[A-Za-z].*?(\w+::~?\w+)\(")


def read(path, sources):
    """Adds the file's line counts to `sources`: source -> line -> [ran, function]."""
    source, current = None, None
    with open(path, errors="replace") as f:
        for row in f:
            parts = row.split(":", 2)
            if len(parts) < 3:
                continue
            count, number, code = parts[0].strip(), parts[1].strip(), parts[2]
            if number == "0":
                if code.startswith("Source:"):
                    source = code[len("Source:"):].strip()
                continue
            match = DEFINITION.match(code)
            if match:
                current = match.group(1)
            if count == "-" or source is None:
                continue
            line = sources.setdefault(source, {}).setdefault(int(number), [False, current])
            line[0] = line[0] or not count.startswith("#####")


def summarise(lines):
    """(executable lines, unrun lines, functions none of whose lines ran)."""
    functions = {}
    for ran, function in lines.values():
        if function:
            functions[function] = functions.get(function, False) or ran
    unrun = sum(1 for ran, _ in lines.values() if not ran)
    return len(lines), unrun, [name for name, ran in functions.items() if not ran]


def main():
    root = sys.argv[1].rstrip("/") + "/"
    sources = {}
    for path in sys.argv[2:]:
        read(path, sources)
    rows = []
    for source, lines in sources.items():
        if source.startswith(root):
            total, unrun, never = summarise(lines)
            rows.append((unrun, total, source[len(root):], never))
    rows.sort(key=lambda row: (-row[0], row[2]))
    for unrun, total, name, never in rows:
        if unrun:
            print("%5d of %5d unrun  %s" % (unrun, total, name))
            if never:
                print("      never entered: " + " ".join(never))
    total = sum(row[1] for row in rows)
    missed = sum(row[0] for row in rows)
    print("total: %d of %d lines run (%.1f%%)" % (total - missed, total, 100.0 * (total - missed) / max(total, 1)))


if __name__ == "__main__":
    main()
