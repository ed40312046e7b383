#!/usr/bin/env python3
"""Prints the comparison table from Google Benchmark JSON files.

Benchmark names hold the implementation as one '/'-separated component
(talvo, std, glib, ...); the name without it is the workload. Each row gives
a workload, talvo's figure, a peer, the peer's figure and talvo/peer (below 1
means talvo is faster). The figure is the time per item when the benchmark
reports a "per_item" or "per_op" counter, else the time per iteration. Times
are CPU times (the benchmarks are single-threaded), which stay meaningful
when other work shares the machine.
Counters that must agree between implementations of one workload ("lines",
"matched_bytes") are checked and a disagreement is flagged.
"""
import json
import sys

IMPLS = ("talvo", "std", "glib", "tinyxml2", "pugixml", "libxml2", "pcre2", "pcre2jit",
         "stdio", "stdio_unlocked", "sort", "nth_element")
AGREEING = ("lines", "matched_bytes")
TO_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def split(name):
    parts = name.split("/")
    for i, part in enumerate(parts):
        if part in IMPLS:
            return "/".join(parts[:i] + parts[i + 1:]), part
    return None, None


def figure(bench):
    for counter in ("per_item", "per_op"):
        if counter in bench:
            return bench[counter] * 1e9, "ns/item"
    return bench["cpu_time"] * TO_NS[bench.get("time_unit", "ns")], "ns/iter"


def human(ns):
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if ns >= scale:
            return "%.3g %s" % (ns / scale, unit)
    return "%.3g ns" % ns


def main():
    rows = {}
    order = []
    for path in sys.argv[1:]:
        with open(path) as f:
            for bench in json.load(f).get("benchmarks", []):
                if bench.get("run_type") == "aggregate" or bench.get("error_occurred"):
                    continue
                workload, impl = split(bench["name"])
                if workload is None:
                    continue
                if workload not in rows:
                    rows[workload] = {}
                    order.append(workload)
                rows[workload][impl] = bench
    width = max([len(w) for w in order] + [8])
    print("%-*s  %12s  %-14s %12s  %9s" % (width, "workload", "talvo", "peer", "peer fig.", "talvo/peer"))
    for workload in order:
        impls = rows[workload]
        talvo = impls.get("talvo")
        talvo_ns, unit = figure(talvo) if talvo else (None, "")
        peers = [i for i in IMPLS if i != "talvo" and i in impls] or [None]
        for peer in peers:
            peer_ns = figure(impls[peer])[0] if peer else None
            ratio = "%.2f" % (talvo_ns / peer_ns) if talvo_ns and peer_ns else "-"
            flag = ""
            for counter in AGREEING:
                values = {b[counter] for b in impls.values() if counter in b}
                if len(values) > 1:
                    flag = "  DISAGREE(%s)" % counter
            print("%-*s  %12s  %-14s %12s  %9s%s" % (
                width, workload, human(talvo_ns) if talvo_ns else "-", peer or "-",
                human(peer_ns) if peer_ns else "-", ratio, flag))
    print("(figures: CPU time per item where the benchmark counts items, else per iteration)")


if __name__ == "__main__":
    main()
