#!/usr/bin/env python3
"""Checks that every include runs down the floors of the code: check-floors.py [ROOT]

A file includes only from its own floor or from one below it; tests may include anything, and testing/, which lies on top, is theirs alone. The
platform's two sides are private to platform/ and to tests, the system's headers to the platform; so the same sources build on both sides. In the
floors a name that speaks of tests is that of a test. Exit code 1 names each offence.
"""
import pathlib
import re
import sys

ORDER = ["platform", "foundation", "lang", "contextmenu", "comserver", "shellext", "explorercommand", "tools", "testing"]
# What only tests, fuzz targets and benchmarks are.
TESTS = ["tests", "fuzz", "bench"]
# Inside foundation/: what each folder may include besides itself and foundation/errors.h.
FOUNDATION = {"text": [], "path": ["text"], "charset": ["text"], "stream": ["text", "charset"], "codec": ["text", "charset", "stream"],
              "registry": ["text"], "process": ["text", "path"], "errors.h": [], "errors.cpp": []}


def offence(source: pathlib.PurePosixPath, include: str) -> str | None:
    target = pathlib.PurePosixPath(include)
    floor, below = source.parts[0], target.parts[0]
    if source.stem.endswith("_test"):
        return None
    if below in TESTS or target.name == "gtest.h" and floor != "testing":
        return "only tests include that"
    if floor not in ORDER or below not in ORDER:
        return None
    if ORDER.index(below) > ORDER.index(floor):
        return f"{floor}/ must not include from {below}/"
    if {floor, below} == {"shellext", "explorercommand"}:
        return "the two servers know nothing of each other"
    if floor == below == "foundation" and target.parts[1] not in ["errors.h", source.parts[1],
                                                                 *FOUNDATION[source.parts[1]]]:
        return f"foundation/{source.parts[1]} must not include from foundation/{target.parts[1]}"
    if below == "platform" and target.parts[1] in ("win32", "host") and floor not in ("platform", "testing") \
            and not source.stem.endswith("_host"):
        return "only platform/, tests and host halves of tools know the two sides"
    return None


def main() -> int:
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    failures = 0
    for path in sorted(p for floor in ORDER for p in (root / floor).rglob("*") if p.suffix in (".h", ".cpp", ".py")):
        source = pathlib.PurePosixPath(path.relative_to(root).as_posix())
        if re.search(r"test|fixture|mock", source.stem) and not source.stem.endswith("_test") and source.parts[0] != "testing":
            print(f"{source}: what tests share lies in testing/")
            failures += 1
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = re.match(r'#include [<"]([^>"]+)[>"]', line)
            reason = match and offence(source, match.group(1))
            if match and match.group(1) == "windows.h" and source.name != "win32_api.h":
                reason = "windows.h comes through platform/win32/win32_api.h"
            if re.search(r"\b_WIN32\b", line) and source.parts[0] != "platform":
                reason = "_WIN32 belongs to platform/"
            if reason:
                print(f"{source}:{number}: {reason}: {line.strip()}")
                failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
