"""Figures, and the one form in which every measurement prints them."""

import json
import math
import statistics
import sys


def median(values):
    return statistics.median(values)


def percentile(values, part):
    """The smallest of `values` that `part` percent of them do not exceed."""
    ordered = sorted(values)
    return ordered[max(0, math.ceil(len(ordered) * part / 100) - 1)]


def rounded(number):
    """Four digits that count: more is never known."""
    return number if number is None or number == 0 else float(f"{number:.4g}")


def print_figure(name, what, against, unit, measured, reference, goal, command, note="", direction="at most",
                 ratio=None):
    """Prints one figure as a line of JSON. The goal is one for the ratio of measured to reference; where there
    is no reference, for what was measured. Without a goal the figure is only stated."""
    if ratio is None and reference:
        ratio = measured / reference
    judged = ratio if reference is not None else measured
    met = None
    if goal is not None and judged is not None:
        met = judged <= goal if direction == "at most" else judged >= goal
    print(json.dumps({
        "name": name,
        "what": what,
        "against": against,
        "unit": unit,
        "measured": rounded(measured),
        "reference": rounded(reference),
        "ratio": rounded(ratio),
        "goal": goal,
        "direction": direction,
        "met": met,
        "command": command,
        "note": note,
    }))
    sys.stdout.flush()
