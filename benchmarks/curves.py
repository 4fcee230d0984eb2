# SPDX-License-Identifier: Apache-2.0
"""Draws the scaling curves: what telling one listener costs, by how many there are."""

import math

# Benchmark, label, colour, dashes; of these the ones that were run are drawn.
CURVES = [
    ("switch/ours", "ours, every style resolved", "#0b6bcb", ""),
    ("switch/baseline", "plain baseline", "#333333", ""),
    ("unchanged/ours", "ours, nobody's style changed", "#0b6bcb", "5 4"),
    ("switch/signals2", "Boost.Signals2, tracked slots", "#b35900", ""),
    ("switch/sigc", "sigc++ trackables", "#7a4fbf", ""),
    ("switch/qt_signal", "Qt, signal to slot", "#1a8f3c", "5 4"),
    ("switch/qt_application", "QApplication::setPalette", "#1a8f3c", ""),
    ("switch/juce", "JUCE, sendLookAndFeelChange", "#c2255c", ""),
    ("switch/gtk4", "GTK 4, provider reload", "#8c8c00", ""),
]


def curve_points(samples, prefix):
    points = []
    for key, sample in samples.items():
        work, _, size = key.rpartition("/")
        if work == prefix and size.isdigit():
            points.append((int(size), sample.median / int(size)))
    return sorted(points)


class Plot:
    """Logarithmic axes in a fixed frame."""

    left, top, width, height = 70, 40, 560, 380

    def __init__(self, curves):
        every = [p for _, points in curves for p in points]
        self.x_range = [math.log10(f(p[0] for p in every)) for f in (min, max)]
        low, high = (math.log10(f(p[1] for p in every)) for f in (min, max))
        self.y_range = [math.floor(low), max(math.ceil(high), math.floor(low) + 1)]
        if self.x_range[0] == self.x_range[1]:
            self.x_range[1] += 1

    def x(self, value):
        low, high = self.x_range
        return self.left + (math.log10(value) - low) / (high - low) * self.width

    def y(self, value):
        low, high = self.y_range
        return self.top + self.height - (math.log10(value) - low) / (high - low) * self.height

    def axes(self):
        parts = []
        right, bottom = self.left + self.width, self.top + self.height
        for exponent in range(self.y_range[0], self.y_range[1] + 1):
            y = self.y(10.0**exponent)
            parts.append(f'<line x1="{self.left}" y1="{y:.1f}" x2="{right}" y2="{y:.1f}" '
                         'stroke="#dddddd"/>')
            parts.append(f'<text x="{self.left - 8}" y="{y + 4:.1f}" text-anchor="end">'
                         f"{10.0**exponent:,g}</text>")
        for exponent in range(math.ceil(self.x_range[0]), math.floor(self.x_range[1]) + 1):
            x = self.x(10.0**exponent)
            parts.append(f'<line x1="{x:.1f}" y1="{self.top}" x2="{x:.1f}" y2="{bottom}" '
                         'stroke="#dddddd"/>')
            parts.append(f'<text x="{x:.1f}" y="{bottom + 20}" text-anchor="middle">'
                         f"{10**exponent:,}</text>")
        parts.append(f'<text x="{self.left + self.width / 2}" y="{bottom + 42}" '
                     'text-anchor="middle">listeners</text>')
        return parts


def svg_text(samples, date):
    present = [(curve, curve_points(samples, curve[0])) for curve in CURVES]
    present = [(curve, points) for curve, points in present if points]
    if not present:
        return None
    plot = Plot(present)
    parts = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 900 480" '
             'font-family="sans-serif" font-size="12" fill="#222222">',
             '<rect width="900" height="480" fill="#ffffff"/>',
             f'<text x="{plot.left}" y="22" font-size="15">Telling every listener: nanoseconds for '
             f"each ({date})</text>", *plot.axes()]
    for place, ((_, label, colour, dashes), points) in enumerate(present):
        line = " ".join(f"{plot.x(x):.1f},{plot.y(y):.1f}" for x, y in points)
        style = f'stroke="{colour}" stroke-width="2" stroke-dasharray="{dashes}"'
        parts.append(f'<polyline points="{line}" fill="none" {style}/>')
        parts += [f'<circle cx="{plot.x(x):.1f}" cy="{plot.y(y):.1f}" r="3" fill="{colour}"/>'
                  for x, y in points]
        y = plot.top + 10 + 20 * place
        parts.append(f'<line x1="650" y1="{y}" x2="676" y2="{y}" {style}/>')
        parts.append(f'<text x="684" y="{y + 4}">{label}</text>')
    return "\n".join([*parts, "</svg>", ""])
