#!/usr/bin/env python3
"""bench_table.py RESULT.json...: prints one table of the benchmarks "group/case/contender".

A row is a case; the first figure is our own speed (the contender "qelkit"), each further column
says how many times faster than that contender we were (below 1: slower).
"""
import json
import statistics
import sys

OURS = "qelkit"
UNITS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def read(paths):
    """Returns {group: {case: {contender: (nanoseconds, bytes per second or None)}}}."""
    groups = {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            for b in json.load(file)["benchmarks"]:
                if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
                    continue
                name = b.get("run_name", b["name"]).split("/")
                group, case, contender = name[0], name[1], name[2]
                cases = groups.setdefault(group, {})
                times = cases.setdefault(case, {}).setdefault(contender, [])
                times.append((b["cpu_time"] * UNITS[b["time_unit"]], b.get("bytes_per_second")))
    for cases in groups.values():
        for contenders in cases.values():
            for contender, runs in contenders.items():
                speeds = [r[1] for r in runs if r[1]]
                contenders[contender] = (statistics.median(r[0] for r in runs),
                                         statistics.median(speeds) if speeds else None)
    return groups


def speed(result):
    nanoseconds, bytes_per_second = result
    if bytes_per_second:
        return f"{bytes_per_second / 1e6:.0f} MB/s"
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= scale:
            return f"{nanoseconds / scale:.2f} {unit}"
    return f"{nanoseconds:.1f} ns"


def print_group(group, cases):
    peers = []
    for contenders in cases.values():
        peers += [c for c in contenders if c != OURS and c not in peers]
    header = [group, OURS] + [f"x {p}" for p in peers]
    rows, ratios = [], {p: [] for p in peers}
    for case, contenders in cases.items():
        ours = contenders.get(OURS)
        row = [case, speed(ours) if ours else "-"]
        for peer in peers:
            if ours and peer in contenders:
                ratios[peer].append(contenders[peer][0] / ours[0])
                row.append(f"{ratios[peer][-1]:.2f}")
            else:
                row.append("-")
        rows.append(row)
    if len(rows) > 2:
        rows.append(["(median)", ""] +
                    [f"{statistics.median(ratios[p]):.2f}" if ratios[p] else "-" for p in peers])
    widths = [max(len(r[i]) for r in [header] + rows) for i in range(len(header))]
    for row in [header] + rows:
        cells = [row[0].ljust(widths[0])] + [c.rjust(w) for c, w in zip(row[1:], widths[1:])]
        print("  ".join(cells).rstrip())
    print()


def main():
    groups = read(sys.argv[1:])
    for group, cases in groups.items():
        print_group(group, cases)
    return 0 if groups else 1


if __name__ == "__main__":
    sys.exit(main())
