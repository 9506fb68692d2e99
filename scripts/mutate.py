#!/usr/bin/env python3
"""Tries the tests: changes one place of the code at a time, runs the native tests that depend on it, and names the changes
that no test notices.

    mutate.py [--count 200] [--seed 1]             a sample; the same seed takes the same changes of the same code
    mutate.py --only contextmenu/dispatch.cpp      one file, or with :LINE one line of it
    mutate.py --list                               prints the changes instead of trying them

Works on a copy under build/mutate/ (its own build, without sanitizers); the tree it is called in stays as it is. A change
that does not compile is not counted, one under which the tests do not come to an end counts as noticed. Changes that are
equal in effect stand with their reason in scripts/mutate-equal.txt and are left out. Exit code 1 when something survived.
"""
import argparse
import contextlib
import dataclasses
import hashlib
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile

FLOORS = ["contextmenu", "comserver", "shellext", "explorercommand", "lang", "foundation"]
NO_SOURCE = re.compile(r"_test\.cpp$|single_byte_tables\.cpp$")  # every entry of those tables is compared with iconv
TOOL_TESTS = r"^(interlang|nmark|rightclick)\."
MEMORY = 4 << 30  # bytes that a test program may take
SWAPS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&", "==": "!=", "!=": "==", "+": "-",
         "-": "+", "*": "/", "%": "*", "&": "|", "|": "&", "<<": ">>", ">>": "<<", "+=": "-=", "-=": "+=",
         "|=": "&="}
NO_STATEMENT = re.compile(r"(return\b(?!;)|if|for|while|switch|using|const|constexpr|static|template|friend|struct|class|"
                          r"enum|extern|case|default|namespace|public|private|protected|virtual|explicit|do|else)\b")


@dataclasses.dataclass
class Mutant:
    file: str
    line: int
    kind: str
    old: str  # the lines that change, before and after, blanks folded
    new: str
    text: str  # the whole file after the change

    def key(self) -> str:
        return f"{self.file}: {self.old} ==> {self.new}"


def mask(text: str) -> str:
    """The text with comments and preprocessor lines blanked and the content of literals as \1, position by position."""
    pattern = r'//[^\n]*|/\*.*?\*/|^#[^\n]*|^static_assert[^;]*;|"(?:\\.|[^"\\\n])*"' \
              r"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'"

    def cover(match: re.Match) -> str:
        found = match.group(0)
        if found[0] in "\"'":
            return found[0] + "\1" * (len(found) - 2) + found[0]
        return re.sub(r"[^\n]", " ", found)

    return re.sub(pattern, cover, text, flags=re.S | re.M)


def closing(code: str, opening: int) -> int:
    depth = 0
    for at in range(opening, len(code)):
        depth += (code[at] in "([{") - (code[at] in ")]}")
        if depth == 0:
            return at
    return len(code)


def operand(code: str, at: int, step: int, ends: str) -> int:
    """How far the operand reaches that begins at `at` and goes to the left (step -1) or to the right (1)."""
    depth = 0
    while 0 <= at < len(code):
        depth += (code[at] in "([{") - (code[at] in ")]}")
        if depth * step < 0 or (depth == 0 and code[at] in ";,"):
            break
        window = code[at:at + 8] if step > 0 else code[max(at - 7, 0):at + 1]
        if depth == 0 and (re.match(ends, window) if step > 0 else re.search(f"(?:{ends})$", window)):
            break
        at += step
    return at


def edits(text: str):
    """Every change as (kind, begin, end, what stands there instead)."""
    code = mask(text)
    constants = sorted(set(re.findall(r"\bk[A-Z]\w*", code)))
    for match in re.finditer(r" (<=?|>=?|&&|\|\||[=!]=|[-+*%&|]|<<|>>|[-+|]=) ", code):
        kind = "boundary" if match.group(1) in ("<", "<=", ">", ">=") else "operator"
        yield kind, match.start(1), match.end(1), SWAPS[match.group(1)]
    for match in re.finditer(r"\+\+|--", code):
        yield "operator", *match.span(), "--" if match.group(0) == "++" else "++"
    for match in re.finditer(r"(?<![\w.'])(0[xX][0-9A-Fa-f]+|\d+)(?=[uUlL]*\b)(?!['.])", code):
        number = int(match.group(0), 0) if not re.fullmatch(r"0\d+", match.group(0)) else int(match.group(0), 8)
        yield "boundary", *match.span(), str(number + 1)
        if number:
            yield "constant", *match.span(), "0"
    for match in re.finditer(r'"\x01+"', code):
        yield "constant", *match.span(), '""'
    for match in re.finditer(r"'\x01'", code):
        yield "constant", *match.span(), f"'{chr(ord(text[match.start() + 1]) + 1)}'"
    for match in re.finditer(r"\bk[A-Z]\w*\b(?!(?:\[\])? = )", code):
        others = [name for name in constants if name != match.group(0)]
        if others:
            yield "constant", *match.span(), max(others, key=lambda n: len(os.path.commonprefix([n, match.group(0)])))
    for match in re.finditer(r"\b(true|false)\b", code):
        yield "boolean", *match.span(), "false" if match.group(0) == "true" else "true"
    for match in re.finditer(r"\b(if|while) \(", code):
        end = closing(code, match.end() - 1)
        begin = max(match.end(), code.rfind("; ", match.end(), end) + 2)
        if re.search(r"\w [&*]?\w+ = ", code[begin:end]) and "(" not in code[begin:end].split(" = ")[0]:
            continue  # declares what it asks
        yield "check", begin, end, "false"
        if match.group(1) == "if":
            yield "check", begin, end, "true"
            yield "check", begin, end, f"!({text[begin:end]})"
    ends = r" = |return |\? |: |\|\|"
    for match in re.finditer(r" (&&|\|\||\?) ", code):
        stop = ends + (r"|&&" if match.group(1) == "&&" else "")
        left = operand(code, match.start(), -1, stop) + 1
        for value in {"&&": ["true"], "||": ["false"], "?": ["true", "false"]}[match.group(1)]:
            yield "check", left, match.start(), value
            if match.group(1) != "?":
                yield "check", match.end(), len(code[:operand(code, match.end(), 1, stop)].rstrip()), value
    for match in re.finditer(r"^ +([\w:*+(-][^;{}]*(?<!= delete)(?<!= default);)", code, re.M):
        before = code[:match.start()].rstrip()
        if not NO_STATEMENT.match(match.group(1)) and re.search(r"([;{}):]|\belse)$", before):
            yield "statement", *match.span(1), ";"


def mutants(root: pathlib.Path) -> list[Mutant]:
    found = {}
    for path in sorted(p for floor in FLOORS for p in (root / floor).rglob("*") if p.suffix in (".h", ".cpp")):
        if NO_SOURCE.search(path.name):
            continue
        file, text = path.relative_to(root).as_posix(), path.read_text(encoding="utf-8")
        for kind, begin, end, instead in edits(text):
            first, last = text.rfind("\n", 0, begin) + 1, text.find("\n", end)
            old = text[first:last]
            new = text[first:begin] + instead + text[end:last]
            changed = text[:begin] + instead + text[end:]
            if changed != text:
                found.setdefault(changed, Mutant(file, text.count("\n", 0, begin) + 1, kind, " ".join(old.split()),
                                                 " ".join(new.split()), changed))
    return list(found.values())


class Bench:
    """The copy of the tree, its build, and the tests that run there."""

    def __init__(self, root: pathlib.Path, timeout: float):
        self.source, self.build = root / "build/mutate/source", root / "build/mutate/build"
        self.timeout = timeout
        self.copy(root)
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        subprocess.run(["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", "-DCMAKE_CXX_FLAGS=-O0",
                        "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST", *launcher],
                       check=True, stdout=subprocess.DEVNULL)
        listed = subprocess.run(["ninja", "-C", self.build, "-t", "targets", "all"], check=True, capture_output=True, text=True)
        self.programs = re.findall(r"^(\S*tests): CXX_EXECUTABLE_LINKER", listed.stdout, re.M)
        # The tools' own tests see a change through the programs.
        self.tools = ["bin/interlang", "bin/rightclick", "bin/nmark.exe", "bin/nmshell-setup"]
        if not self.make(self.programs + self.tools):
            sys.exit("mutate: the code as it is does not build")
        for program in [*self.programs, None]:
            if not self.passes(program):
                sys.exit(f"mutate: {program or 'a test of the tools'} fails on the code as it is")

    def copy(self, root: pathlib.Path) -> None:
        """Only what differs, so that the build has little to do."""
        listed = subprocess.run(["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                                check=True, capture_output=True, text=True).stdout
        names = {name for name in listed.split("\0") if name and (root / name).is_file()}
        for old in [p for p in self.source.rglob("*") if p.is_file()]:
            if old.relative_to(self.source).as_posix() not in names:
                old.unlink()
        for name in names:
            target, content = self.source / name, (root / name).read_bytes()
            if not target.exists() or target.read_bytes() != content:
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(root / name, target)

    def make(self, targets: list[str], dry: bool = False) -> str:
        """What the build said; empty when it failed."""
        run = subprocess.run(["ninja", "-C", self.build, *(["-n"] if dry else []), *targets], capture_output=True, text=True)
        return run.stdout if run.returncode == 0 else ""

    def passes(self, program: str | None) -> bool:
        """Whether the test program does; None stands for the tools' tests."""
        command = ["ctest", "-R", TOOL_TESTS] if program is None else \
            [self.build / program, "--gtest_fail_fast", "--gtest_brief=1"]
        with tempfile.TemporaryDirectory(prefix="mutate-", ignore_cleanup_errors=True) as scratch:
            running = subprocess.Popen(
                command, cwd=self.build, env={**os.environ, "TMPDIR": scratch}, start_new_session=True,
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY)))
            try:
                return running.wait(self.timeout) == 0
            except subprocess.TimeoutExpired:
                return False
            finally:
                with contextlib.suppress(ProcessLookupError):  # programs that it started, and itself
                    os.killpg(running.pid, signal.SIGKILL)
                running.wait()

    def judge(self, mutant: Mutant) -> str:
        """killed, survived or "not compiled"."""
        target = self.source / mutant.file
        original = target.read_bytes()
        target.write_text(mutant.text, encoding="utf-8")
        try:
            floor = os.path.dirname(mutant.file)
            affected = [p for p in self.programs + self.tools if "no work to do" not in self.make([p], dry=True)]
            for program in sorted(affected, key=lambda p: (p in self.tools, not p.startswith(floor))):
                if not self.make([program]):
                    return "not compiled"
                if program not in self.tools and not self.passes(program):
                    return "killed"
            tools = set(affected) & set(self.tools)
            return "killed" if tools and not self.passes(None) else "survived"
        finally:
            target.write_bytes(original)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seed", default="1", help="another seed takes another sample")
    parser.add_argument("--count", type=int, default=200, help="changes to try; 0 takes all")
    parser.add_argument("--only", action="append", default=[], metavar="FILE[:LINE]", help="only changes there")
    parser.add_argument("--kind", help="boundary, check, constant, boolean, operator or statement")
    parser.add_argument("--equal", type=pathlib.Path, metavar="FILE", help="changes equal in effect")
    parser.add_argument("--timeout", type=float, default=60, help="seconds for one test program")
    parser.add_argument("--list", action="store_true", help="print the changes, try none")
    options = parser.parse_args()
    root = pathlib.Path(__file__).resolve().parent.parent

    equal = {line for line in (options.equal or root / "scripts/mutate-equal.txt").read_text("utf-8").splitlines()
             if line and not line.startswith("#")}
    chosen = [m for m in mutants(root) if not options.only or m.file in options.only or f"{m.file}:{m.line}" in options.only]
    chosen = [m for m in chosen if not options.kind or m.kind == options.kind]
    left_out = {m.key() for m in chosen} & equal
    # Ordered by what a change is, not by where: the sample stays when other lines come and go.
    chosen = sorted((m for m in chosen if m.key() not in equal),
                    key=lambda m: hashlib.sha256(f"{options.seed} {m.key()} {m.kind}".encode()).digest())
    wanted = options.count or len(chosen)
    if options.list:
        for mutant in sorted(chosen[:wanted], key=lambda m: (m.file, m.line)):
            print(f"{mutant.file}:{mutant.line}: {mutant.kind}\n  - {mutant.old}\n  + {mutant.new}")
        print(f"{min(wanted, len(chosen))} of {len(chosen)} changes, {len(left_out)} more are equal in effect")
        return 0

    bench = Bench(root, options.timeout)
    killed = survived = 0
    while chosen and killed + survived < wanted:
        part, chosen = chosen[:wanted - killed - survived], chosen[wanted - killed - survived:]
        for mutant in sorted(part, key=lambda m: m.file):  # one file after the other: little to build
            verdict = bench.judge(mutant)
            killed += verdict == "killed"
            survived += verdict == "survived"
            if verdict == "survived":
                print(f"survived: {mutant.file}:{mutant.line}: {mutant.kind}\n  - {mutant.old}\n  + {mutant.new}", flush=True)
            elif sys.stderr.isatty():
                print(f"\r{killed} killed, {survived} survived ", end="", file=sys.stderr)
    tried = killed + survived
    print(f"{killed} of {tried} changes noticed ({killed / max(tried, 1):.1%}), {survived} survived; "
          f"{len(left_out)} known as equal in effect were left out")
    return 1 if survived else 0


if __name__ == "__main__":
    sys.exit(main())
