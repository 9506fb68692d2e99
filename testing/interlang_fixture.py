"""What the tests of the translators' program have in common."""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[1]
PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
COMMAND = [ROOT / "scripts/wine-run.sh", PROGRAM] if PROGRAM.suffix == ".exe" else [PROGRAM]

# Every kind of code unit that some format cannot hold, as language files write it.
ODD_TEXTS = {
    "BACKSLASHES": r"C:\x5Cnew\x5C\x5Cdir\x5C", "PLAIN": r"C:\dir \\n x\ ", "CONTROL": r"\x01a\0\a\b\x1F\x7Fb\r\n\tc\x02",
    "SURROGATES": r"\uD83D \uDE00\uDE00\uD83D \uD83D\uDE00", "BLANKS": r"\x20\x20 a  b\x20", "ONLY": r"\x20",
    "BREAKS": r"\none\n\ntwo\r\nthree\n", "XML": "<a href=\"b\">&amp;'</a>]]>", "PO": r'"q" #, fuzzy \" %1',
    "NONCHARACTERS": r"\uFEFFa\uFFFE\uFFFF\x85\u2028", "EMPTY": "", "odd key \\n <&\">": "x",
}

# Complete: the program's own English texts.
ENGLISH = dict(re.findall(r"^KEY: (.*)\nTEXT: (.*)$", next(ROOT.glob("langs/*en.lang.txt")).read_text(encoding="utf-8"), re.M))


def language(code, texts):
    return f"LANG: {code}\n" + "".join(f"KEY: {key}\nTEXT: {text}\n" for key, text in texts.items())


class InterlangTest(unittest.TestCase):
    """Runs the program over temporary files."""
    patience = 300  # seconds that one run may take

    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="interlang-"))
        self.addCleanup(shutil.rmtree, self.work)

    def write(self, name, text):
        (self.work / name).write_bytes(text if isinstance(text, bytes) else text.encode("utf-8"))

    def read(self, name):
        return (self.work / name).read_text(encoding="utf-8")

    def run_both(self, *arguments, code=0):
        """Standard output and error output; no code: any. They go to files: a pipe stays open as long as any program that was
        started on the way, and Wine starts some that stay."""
        with tempfile.TemporaryFile("w+", encoding="utf-8") as output, tempfile.TemporaryFile("w+", encoding="utf-8") as errors:
            finished = subprocess.run([*COMMAND, *arguments], cwd=self.work, stdout=output, stderr=errors, timeout=self.patience,
                                      check=False)
            output.seek(0)
            errors.seek(0)
            out, said = output.read(), errors.read()
        self.assertEqual(finished.returncode, finished.returncode if code is None else code, out + said)
        return out, said

    def run_tool(self, *arguments, code=0):
        out, errors = self.run_both(*arguments, code=code)
        return out if code < 2 or out else errors

    def texts(self, name):
        """What the file holds, as the program itself exports it: key to target, None for a missing one."""
        code = next(line[6:] for line in self.read(name).splitlines() if line.startswith("LANG: "))
        exported = self.run_tool("export", name, "--lang", code, "--to", "xliff", "--reference-file", name, "--reference",
                                 code)
        return exported[exported.index("<body>"):]
