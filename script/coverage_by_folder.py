# SPDX-License-Identifier: Apache-2.0
"""Sums up a summary of gcovr's by folder."""

import collections
import json
import sys


def share(row, kind):
    covered, total = row[kind, "covered"], row[kind, "total"]
    return f"{covered:>6} of {total:>5}  {100 * covered / total if total else 100:5.1f} %"


with open(sys.argv[1], encoding="utf-8") as file:
    sources = json.load(file)["files"]
sums = collections.defaultdict(collections.Counter)
for source in sources:
    for folder in (source["filename"].split("/")[0] + "/", "all"):
        for kind in ("line", "branch"):
            sums[folder][kind, "covered"] += source[f"{kind}_covered"]
            sums[folder][kind, "total"] += source[f"{kind}_total"]
print(f"\n{'':12}{'lines':>15}{'':8}{'branches':>18}")
for folder in [*sorted(set(sums) - {"all"}), "all"]:
    row = sums[folder]
    print(f"{folder:12}{share(row, 'line')}    {share(row, 'branch')}")
