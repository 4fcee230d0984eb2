#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes one table of ratios, a JSON file and the scaling curves from the benchmarks' own output."""

import argparse
import datetime
import json
import os
import pathlib
import platform
import statistics
import sys

from curves import svg_text

NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
COLUMNS = ["ours", "baseline", "Qt 6", "Signals2", "sigc++", "GTK 4", "JUCE"]


class Sample:
    """One figure of all rounds: nanoseconds, or a plain number."""

    def __init__(self, values, is_time):
        self.values = values
        self.is_time = is_time
        self.median = statistics.median(values)

    @property
    def spread(self):
        """Half the distance between the quartiles, as a fraction of the median."""
        if len(self.values) < 4 or not self.median:
            return None
        quartiles = statistics.quantiles(self.values, n=4)
        return (quartiles[2] - quartiles[0]) / 2 / self.median

    def text(self):
        text = time_text(self.median) if self.is_time else f"{self.median:,.6g}"
        if self.is_time and self.spread is not None:
            text += f" ±{self.spread:.0%}"
        return text


def time_text(nanoseconds):
    for unit, factor in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= factor:
            return f"{nanoseconds / factor:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def key_of(name):
    """The benchmark's name without what the measuring adds; two threads stay in it."""
    dropped = ("real_time", "manual_time", "threads:1")
    return "/".join(p for p in name.split("/") if p not in dropped and "iterations:" not in p)


def read_samples(folder):
    """All figures by key; a counter is "key#counter". Also the errors that benchmarks ended with."""
    values, errors = {}, {}
    for path in sorted(folder.glob("*.json")):
        text = path.read_text(encoding="utf-8")
        if not text.strip():
            continue  # a program that could not run here
        for row in json.loads(text)["benchmarks"]:
            key = key_of(row["name"])
            if row.get("error_occurred"):
                errors[key] = row.get("error_message", "")
                continue
            # Real time is per thread's share; a read takes as long as all shares together.
            time = row["real_time"] * NANOSECONDS[row["time_unit"]] * row.get("threads", 1)
            values.setdefault(key, []).append(time)
            for counter in ("allocations", "bytes", "bytes_read"):
                if counter in row:
                    values.setdefault(f"{key}#{counter}", []).append(row[counter])
    return {key: Sample(v, "#" not in key) for key, v in values.items()}, errors


class Check:
    """A target: `over` divided by `under` (or `over` itself) is at most, or at least, a limit."""

    def __init__(self, text, over, under, limit, at_least=False):
        self.text, self.over, self.under = text, over, under
        self.limit, self.at_least = limit, at_least

    def ratio(self, samples):
        """The median of the rounds' own ratios: a slow minute slows both sides of one."""
        if self.over not in samples or (self.under and self.under not in samples):
            return None
        over = samples[self.over]
        if not self.under:
            return over.median
        under = samples[self.under]
        if len(over.values) != len(under.values):
            return over.median / under.median
        return statistics.median(o / u for o, u in zip(over.values, under.values))

    def reached(self, samples):
        ratio = self.ratio(samples)
        if ratio is None:
            return None
        return ratio >= self.limit if self.at_least else ratio <= self.limit


class Row:
    def __init__(self, work, cells, checks):
        self.work, self.cells, self.checks = work, cells, checks


def at_most(text, ours, other, limit):
    return Check(f"≤ {limit:g} × {text}", ours, other, limit)


def faster(text, ours, other, times):
    return Check(f"{times:g} × faster than {text}", other, ours, times, at_least=True)


def read_rows():
    rows = []
    for kind, label in (("own", "own"), ("inherited", "inherited")):
        ours = f"read_{kind}/ours"
        peers = {"ours": ours, "GTK 4": "read_own/gtk4", "JUCE": "read_own/juce"}
        rows.append(Row(f"typed read, {label}; Qt: QWidget::palette().color",
                        peers | {"Qt 6": "read_own/qt_widget"},
                        [at_most("QWidget", ours, "read_own/qt_widget", 1)]))
        rows.append(Row(f"typed read, {label}; Qt: QPalette::color (an aim)",
                        {"ours": ours, "Qt 6": "read_own/qt_palette"},
                        [at_most("QPalette", ours, "read_own/qt_palette", 1)]))
        rows.append(Row(f"typed read, {label}, 2 threads on one style; baseline: 1 thread",
                        {"ours": f"{ours}/threads:2", "baseline": ours},
                        [at_most("1 thread", f"{ours}/threads:2", ours, 1.1)]))
        rows.append(Row(f"typed read, {label}, 2 threads on one style; baseline: on one each",
                        {"ours": f"{ours}/threads:2", "baseline": "read_apart/ours/threads:2"},
                        [at_most("nothing shared", f"{ours}/threads:2",
                                 "read_apart/ours/threads:2", 1.1)]))
    for kind in ("predefined", "custom"):
        ours, baseline = f"read_key_{kind}/ours", f"read_key_{kind}/baseline"
        rows.append(Row(f"read by {kind} key; baseline: one find in an unordered_map",
                        {"ours": ours, "baseline": baseline},
                        [at_most("baseline", ours, baseline, 1.2)]))
    return rows


def notification_rows():
    rows = []
    for size in (1000, 10_000, 100_000, 1_000_000):
        ours, baseline = f"switch/ours/{size}", f"switch/baseline/{size}"
        qt = f"switch/qt_application/{size}"
        cells = {"ours": ours, "baseline": baseline, "Qt 6": qt,
                 "Signals2": f"switch/signals2/{size}", "sigc++": f"switch/sigc/{size}",
                 "GTK 4": f"switch/gtk4/{size}", "JUCE": f"switch/juce/{size}"}
        rows.append(Row(f"scheme switch, {size:,} listeners; Qt: QApplication::setPalette", cells,
                        [at_most("baseline", ours, baseline, 1.5),
                         faster("Qt", ours, qt, 8)]))
        signal = f"switch/qt_signal/{size}"
        rows.append(Row(f"scheme switch, {size:,} listeners; Qt: signal to slot",
                        {"ours": ours, "baseline": baseline, "Qt 6": signal}, []))
    for size in (1000, 10_000, 100_000, 1_000_000):
        ours, baseline = f"unchanged/ours/{size}", f"switch/baseline/{size}"
        rows.append(Row(f"notification that changes nobody's style, {size:,} listeners",
                        {"ours": ours, "baseline": baseline},
                        [at_most("baseline", ours, baseline, 1)]))
    for kind, label in (("pin", "a pin"), ("add_style", "a style added")):
        for size in (1000, 10_000, 100_000, 1_000_000):
            ours, baseline = f"{kind}_and_switch/ours/{size}", f"switch/baseline/{size}"
            rows.append(Row(f"{label} and a switch in turns, {size:,} listeners",
                            {"ours": ours, "baseline": baseline},
                            [at_most("a switch alone", ours, f"switch/ours/{size}", 2)]))
    return rows


def change_rows():
    subtree, doubled = "subtree/ours/100000", "subtree/ours/200000"
    rows = [Row("change of 1 % of 100,000 listeners; Qt: QWidget::setPalette",
                {"ours": subtree, "Qt 6": "subtree/qt_widget/100000",
                 "JUCE": "subtree/juce/100000"},
                [at_most("JUCE", subtree, "subtree/juce/100000", 2.5),
                 faster("Qt", subtree, "subtree/qt_widget/100000", 5)]),
            Row("the same subtree among 200,000; baseline: among 100,000",
                {"ours": doubled, "baseline": subtree, "Qt 6": "subtree/qt_widget/200000",
                 "JUCE": "subtree/juce/200000"},
                [at_most("100,000", doubled, subtree, 1.1)])]
    small, large = "update/ours/10000", "update/ours/20000"
    rows.append(Row("update, 20,000 child styles and listeners; baseline: 10,000",
                    {"ours": large, "baseline": small},
                    [at_most("10,000 (linear: 2)", large, small, 2.3)]))
    for size in (1000, 100_000):
        ours, signals2 = f"connect/ours/{size}", f"connect/signals2/{size}"
        checks = [at_most("Signals2", ours, signals2, 1)]
        if size > 1000:
            checks.append(at_most("1,000 (O(1))", ours, "connect/ours/1000", 1.5))
        rows.append(Row(f"a listener comes and goes among {size:,}",
                        {"ours": ours, "Signals2": signals2, "sigc++": f"connect/sigc/{size}",
                         "Qt 6": f"connect/qt_signal/{size}"}, checks))
    return rows


def exact_rows():
    def row(work, key, text=None, limit=0):
        return Row(work, {"ours": key}, [Check(text, key, None, limit)] if text else [])

    return [
        row("allocations of an update after the first", "update_allocations/ours#allocations",
            "none", 0),
        row("heap bytes of a listener", "listener_bytes/ours#bytes"),
        row("heap bytes of a child style, 3 own values, never read",
            "child_style_bytes/ours#bytes"),
        row("heap bytes of the same, read once", "child_style_bytes/ours#bytes_read"),
        Row("setup of the manager, cold; or, on a slow machine, beside one find in an unordered_map",
            {"ours": "setup_cold/ours"},
            [Check("< 200 µs", "setup_cold/ours", None, 200e3),
             Check("≤ 18,000 × a find", "setup_cold/ours", "read_key_predefined/baseline",
                   18_000)]),
        row("allocations of that setup", "setup_cold/ours#allocations"),
        row("bytes of the stripped shared library", "library#bytes"),
    ]


def ratio_text(check, samples):
    ratio = check.ratio(samples)
    if ratio is None:
        return "not run"
    return f"{ratio:.3g}" if check.under else "–"


def table_lines(rows, samples):
    heading = ["work", *COLUMNS, "ratio", "target", "reached"]
    lines = [heading]
    words = {True: "yes", False: "NO", None: "not run"}
    for row in rows:
        if row.cells["ours"] not in samples:
            continue
        cells = [samples[row.cells[c]].text() if row.cells.get(c) in samples else "–"
                 for c in COLUMNS]
        lines.append([row.work, *cells,
                      "; ".join(ratio_text(c, samples) for c in row.checks),
                      "; ".join(c.text for c in row.checks),
                      "; ".join(words[c.reached(samples)] for c in row.checks)])
    widths = [max(len(line[i]) for line in lines) for i in range(len(heading))]
    texts = ["| " + " | ".join(c.ljust(w) for c, w in zip(line, widths)) + " |" for line in lines]
    texts.insert(1, "|" + "|".join("-" * (w + 2) for w in widths) + "|")
    return texts


def processor():
    try:
        for line in pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.processor() or platform.machine()


def is_idle(load):
    """Whether the first of the load averages is below 0.5, as it has to be before a run."""
    try:
        return float(load.split()[0]) < 0.5
    except (ValueError, IndexError):
        return False


def result_of(arguments, samples, errors, rows, date):
    return {
        "date": date,
        "processor": processor(),
        "cores": os.cpu_count(),
        "load_before": arguments.load,
        "rounds": max(len(sample.values) for sample in samples.values()),
        "errors": errors,
        "figures": {key: {"unit": "ns" if s.is_time else "count", "median": s.median,
                          "spread": s.spread, "values": s.values}
                    for key, s in sorted(samples.items())},
        "ratios": [{"work": row.work, "target": check.text, "ratio": check.ratio(samples),
                    "reached": check.reached(samples)}
                   for row in rows for check in row.checks],
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=pathlib.Path, help="the benchmarks' JSON files")
    parser.add_argument("--library-bytes", type=int, help="size of the stripped library")
    parser.add_argument("--load", default="unknown", help="load averages before the run")
    parser.add_argument("--json", type=pathlib.Path, required=True, help="where the figures go")
    parser.add_argument("--svg", type=pathlib.Path, required=True, help="where the curves go")
    arguments = parser.parse_args()

    samples, errors = read_samples(arguments.folder)
    if not samples:
        sys.exit("report.py: no figures")
    if arguments.library_bytes:
        samples["library#bytes"] = Sample([arguments.library_bytes], False)
    date = datetime.date.today().isoformat()
    rows = read_rows() + notification_rows() + change_rows() + exact_rows()
    result = result_of(arguments, samples, errors, rows, date)
    arguments.json.write_text(json.dumps(result, indent=1) + "\n", encoding="utf-8")
    svg = svg_text(samples, date)
    if svg:
        arguments.svg.write_text(svg, encoding="utf-8")

    print(f"{date}, {result['processor']}, {result['cores']} cores, load before "
          f"{arguments.load}; medians of {result['rounds']} rounds, ± half the distance between "
          "the quartiles\n")
    if not is_idle(arguments.load):
        print("**The machine was busy with something else: these are no figures to keep.**\n")
    print("\n".join(table_lines(rows, samples)))
    for key, message in sorted(errors.items()):
        print(f"{key}: {message}", file=sys.stderr)
    sys.exit(1 if errors else 0)


if __name__ == "__main__":
    main()
