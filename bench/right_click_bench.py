#!/usr/bin/env python3
"""Measures the right-click of the built nmshell.dll beside bare_handler.dll under Wine, and prints how they compare:
right_click_bench.py OUTPUT.json [BUILD]

Wine, its server and the program run on one processor, in a prefix of their own. The table goes into the file under the key
"right_click", beside what is there already."""
import json
import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
APPROVED = r"HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Shell Extensions\Approved"
SETTINGS = r"HKCU\Software\NMark Shell"
LARGEST = 7_100_000  # bytes of one file
SELECTIONS = (1, 10, 100, 1000, 10000, 50000)


def large_file(size):
    entry = "KEY: CXT_MENU_ENTRY_{0}\nTEXT: Vollständig &löschen, Nummer {0}\n\n"
    text = "LANG: en\n\n"
    entries = (entry.format(number) for number in range(size))
    parts, length = [text], len(text)
    while length < size:
        parts.append(next(entries))
        length += len(parts[-1].encode())
    return "".join(parts)


def language_sets(shipped):
    """The files of each case, by name: English first, as many as there are to be, and copies of other names behind them."""
    def files(count):
        return {f"{number:03}.lang.txt": shipped[number % len(shipped)].replace("LANG: ", f"LANG: {number // len(shipped) or ''}")
                for number in range(count)}
    sets = {f"{count} language files": files(count) for count in (len(shipped), 0, 21, 40, 400)}
    for divisor in (1000, 100, 10, 1):
        sets[f"1 language file of {LARGEST // divisor / 1000:g} KB"] = {"en.lang.txt": large_file(LARGEST // divisor)}
    return sets


def prepare(work, build):
    shipped = [path.read_text(encoding="utf-8") for path in sorted((build / "bin/langs").glob("*.lang.txt"))]
    sets = language_sets(shipped)
    for name, files in sets.items():
        langs = work / name / "langs"
        langs.mkdir(parents=True)
        for module in (build / "bin/nmshell.dll", build / "bench/bare_handler.dll"):
            shutil.copy(module, work / name)
        for file, text in files.items():
            (langs / file).write_text(text, encoding="utf-8")
    return list(sets)


def measure(build):
    """A list of rows: work, and the median and tenth percentile of ours and of the bare handler in nanoseconds."""
    with tempfile.TemporaryDirectory(prefix="nmshell-bench-") as home:
        work = pathlib.Path(home) / "work"
        cases = prepare(work, build)
        environment = dict(os.environ, WINEPREFIX=f"{home}/prefix", XDG_DATA_HOME=f"{home}/xdg")
        environment.pop("DISPLAY", None)

        def wine(*command):
            return subprocess.run([ROOT / "scripts/wine-run.sh", *command], env=environment, check=True, text=True,
                                  stdout=subprocess.PIPE, stdin=subprocess.DEVNULL).stdout
        wine("reg", "add", APPROVED, "/v", "{3D5C9A72-6E1B-4F08-A4C3-91B7E2D05F64}", "/d", "QuietOwl_NMark")
        for name in ("Enabled", "Icons"):
            wine("reg", "add", SETTINGS, "/v", name, "/t", "REG_DWORD", "/d", "1")
        wine("reg", "add", SETTINGS, "/v", "Language", "/d", "en")
        try:
            output = wine(build / "bench/right_click_bench.exe", "Z:" + str(work).replace("/", "\\"), *cases)
        finally:
            subprocess.run(["/usr/lib/wine/wineserver64", "-k", "-w"], env=environment, check=False, stderr=subprocess.DEVNULL)
    return [(name, *map(int, times)) for name, *times in (line.split("\t") for line in output.splitlines())]


def exponents(times):
    """How time grows with size: the exponents from each size to the next; none where a busy machine left no time of a work."""
    return [math.log(later[1] / before[1]) / math.log(later[0] / before[0]) if min(before[1], later[1]) > 0 else math.nan
            for before, later in zip(times, times[1:])]


def main():
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})  # one, and not the first, which serves the interrupts
    output = pathlib.Path(sys.argv[1])
    rows = measure(pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else ROOT / "build/win64"))
    # Tenth percentiles: the medians of a busy machine grow with what else it does.
    tenth, bare_tenths = ({name: times[who] for name, *times in rows} for who in (1, 3))
    empty = tenth["load, 0 language files"]
    sizes = [LARGEST // divisor for divisor in (1000, 100, 10, 1)]
    growth = {
        **{name: exponents([(count, times[f"Initialize, {count}"]) for count in SELECTIONS[1:]])
           for name, times in (("Initialize", tenth), ("Initialize, bare", bare_tenths))},
        "reading languages": exponents([(size, tenth[f"load, 1 language file of {size / 1000:g} KB"] - empty)
                                        for size in sizes]),
    }
    table = {name: {"ours": [ours, our_tenth], "bare": [bare, bare_tenth]} for name, ours, our_tenth, bare, bare_tenth in rows}
    everything = json.loads(output.read_text(encoding="utf-8")) if output.exists() else {}
    everything["right_click"] = {"rows": table, "growth": growth}
    output.write_text(json.dumps(everything, indent=1), encoding="utf-8")
    print("%-40s %12s %8s %8s" % ("work", "ours, ns", "ratio", "tenth"))
    for name, ours, our_tenth, bare, bare_tenth in rows:
        print("%-40s %12d %8.2f %8.2f" % (name, ours, ours / bare, our_tenth / bare_tenth))
    for name, values in growth.items():
        print("%-40s %s" % (f"growth, {name}", "  ".join("%.2f" % value for value in values)))


main()
