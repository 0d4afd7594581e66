"""How much memory a process has, as the kernel counts it."""

import pathlib


def memory_of(process):
    """Kibibytes: all that is resident, the part of it that is in no file, and what is the process's own when
    what is shared is divided among those who share it."""
    status = amounts_in(f"/proc/{process}/status")
    rollup = amounts_in(f"/proc/{process}/smaps_rollup")
    return {"VmRSS": status["VmRSS"], "RssAnon": status["RssAnon"], "Pss": rollup["Pss"]}


def amounts_in(file):
    amounts = {}
    for line in pathlib.Path(file).read_text(encoding="utf-8").splitlines():
        name, _, value = line.partition(":")
        words = value.split()
        if len(words) == 2 and words[1] == "kB":
            amounts[name] = int(words[0])
    return amounts
