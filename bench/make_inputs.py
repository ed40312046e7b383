#!/usr/bin/env python3
"""Writes the benchmark inputs into a directory (default: /tmp/talvo-bench-data).

Everything is drawn from fixed seeds, so two runs write identical files:
  xml_<shape>_<size>.xml  XML of about 1, 10 and 50 MB in three shapes:
                          flat (records with attributes), deep (nested
                          sections) and text (prose, comments and CDATA);
  text.txt                about 10 MB of English-like lines;
  keys_<order>_<count>.bin int32 little-endian key streams of 1e5 and 1e6
                          keys: seq (0..n-1), rand (a permutation), dup
                          (n draws from n/10 values).
The XML uses the narrow dialect the library reads: a declaration first,
double-quoted attributes, no entities or character references.
"""
import os
import random
import struct
import sys

WORDS = ("the of and to a in that it was he his I with as had for you not be her on at by "
         "which have or from this him but all she they were my are me one their so an said "
         "them we who would been will no when there The little room looking door morning "
         "street letter window coming evening carriage horse river silver cattle dog cat "
         "address coffee committee running sitting bookkeeper Mississippi balloon shall upon "
         "again better summer gotten tomorrow").split()
MB = 1000 * 1000


def sentence(rng, lo, hi):
    n = rng.randint(lo, hi)
    # squaring skews the choice toward the frequent words at the front
    return " ".join(WORDS[int(rng.random() ** 2 * len(WORDS))] for _ in range(n))


def flat_record(rng, i):
    return ('  <record id="%d" name="%s" price="%d.%02d" stock="%d" tag="%s">\n'
            '    <title>%s</title>\n    <note lang="en" score="%d"/>\n  </record>\n'
            % (i, rng.choice(WORDS), rng.randint(0, 999), rng.randint(0, 99), rng.randint(0, 5000),
               rng.choice(WORDS), sentence(rng, 2, 6), rng.randint(0, 100)))


def deep_section(rng, depth, out, budget):
    indent = " " * depth
    out.append('%s<section level="%d" key="k%d">\n' % (indent, depth, rng.randint(0, 99999)))
    written = len(out[-1])
    children = rng.randint(1, 3) if depth < 24 else 0
    for _ in range(children):
        if written > budget:
            break
        written += deep_section(rng, depth + 1, out, budget // 2)
    out.append('%s<leaf v="%d">%s</leaf>\n' % (indent, rng.randint(0, 9999), sentence(rng, 1, 5)))
    out.append('%s</section>\n' % indent)
    return written + len(out[-1]) + len(out[-2])


def text_block(rng):
    kind = rng.random()
    if kind < 0.7:
        return "  <p>%s.\n  %s.</p>\n" % (sentence(rng, 10, 30), sentence(rng, 5, 20))
    if kind < 0.85:
        return "  <!-- %s -->\n" % sentence(rng, 3, 10)
    return "  <code><![CDATA[if (a < b && c > d) { x = [%d]; }]]></code>\n" % rng.randint(0, 999)


def write_xml(directory, shape, megabytes, seed):
    rng = random.Random(seed)
    target = megabytes * MB
    parts = ['<?xml version="1.0" encoding="UTF-8"?>\n<document shape="%s">\n' % shape]
    size = len(parts[0])
    i = 0
    while size < target:
        if shape == "flat":
            piece = flat_record(rng, i)
        elif shape == "deep":
            chunk = []
            deep_section(rng, 1, chunk, 200000)
            piece = "".join(chunk)
        else:
            piece = text_block(rng)
        parts.append(piece)
        size += len(piece)
        i += 1
    parts.append("</document>\n")
    with open(os.path.join(directory, "xml_%s_%d.xml" % (shape, megabytes)), "w") as f:
        f.write("".join(parts))


def write_text(directory):
    rng = random.Random(2026)
    lines, size = [], 0
    while size < 10 * MB:
        line = sentence(rng, 6, 15)
        if rng.random() < 0.2:
            line += " %d" % rng.randint(0, 999)
        else:
            line += " end."
        lines.append(line)
        size += len(line) + 1
    with open(os.path.join(directory, "text.txt"), "w") as f:
        f.write("\n".join(lines) + "\n")


def write_keys(directory):
    for count, label in ((100000, "1e5"), (1000000, "1e6")):
        rng = random.Random(count)
        streams = {
            "seq": list(range(count)),
            "rand": rng.sample(range(count), count),
            "dup": [rng.randrange(count // 10) for _ in range(count)],
        }
        for order, keys in streams.items():
            with open(os.path.join(directory, "keys_%s_%s.bin" % (order, label)), "wb") as f:
                f.write(struct.pack("<%di" % count, *keys))


def main():
    directory = sys.argv[1] if len(sys.argv) > 1 else "/tmp/talvo-bench-data"
    os.makedirs(directory, exist_ok=True)
    for n, shape in enumerate(("flat", "deep", "text")):
        for megabytes in (1, 10, 50):
            write_xml(directory, shape, megabytes, 100 * n + megabytes)
    write_text(directory)
    write_keys(directory)
    # marks a complete set, so that an interrupted run writes everything again
    open(os.path.join(directory, "complete"), "w").close()


if __name__ == "__main__":
    main()
