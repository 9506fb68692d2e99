#!/usr/bin/env python3
"""Runs the native client as people do: rightclick_host_test.py PROGRAM, with nmark.exe and langs/ beside it."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()


class RightClickTest(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="rightclick-"))
        self.addCleanup(shutil.rmtree, self.work)
        self.file = self.work / "a file ü😀 50%.txt"
        self.file.write_text("x")

    def run_client(self, *arguments, program=PROGRAM, **environment):
        return subprocess.run([program, *map(str, arguments)], env={**os.environ, **environment}, cwd=self.work,
                              capture_output=True, text=True, encoding="utf-8", check=False)

    def answer(self, *arguments, code=0, **environment):
        finished = self.run_client("--json", *arguments, **environment)
        self.assertEqual(finished.returncode, code, finished.stderr)
        return json.loads(finished.stdout)

    def states(self, *arguments):
        """What each offset looks like: the bitmap, or "grayed"."""
        found = {}

        def collect(entries):
            for entry in entries:
                if "offset" in entry:
                    found[entry["offset"]] = "grayed" if entry["state"] == "grayed" else entry["bitmap"]
                    self.assertEqual(entry["id"], 0x7000 + entry["offset"])
                collect(entry.get("entries", []))

        collect(self.answer(*arguments)["entries"])
        return {offset: state for offset, state in found.items() if offset < 7}

    def test_facts_decide_the_entries(self):
        for arguments, expected in (
                ([self.file], {0: 230}),
                ([self.file, self.work, "--icons", "off"], {0: None}),
                (["--drive", "D:"], {1: 231, 2: 232, 3: 234, 5: 235}),
                (["--drive", "C:\\", "--elevation", "0"], {1: "grayed", 2: 232, 3: 234, 5: "grayed"}),
                (["--drive", "D:", "E:"], {1: "grayed", 2: 232, 3: 234, 5: 235}),
                (["--bin", "--elevation", "2"], {4: "grayed", 6: 235}),
                ([self.file, "--flags", "0x8"], {})):
            with self.subTest(arguments):
                self.assertEqual(self.states(*arguments), expected)

    def test_recycle_bin_states(self):
        for fact, state, postfix in (("full", "enabled", ""), ("empty", "grayed", " (empty)"),
                                     ("none", "grayed", " (not available)")):
            drive = self.answer("--drive", "D:", "--recycle-bin", fact)["entries"][3]
            self.assertEqual((drive["state"], drive["text"]),
                             (state, "Wipe &Recycle Bin of this drive" + postfix))
            self.assertEqual(self.answer("--bin", "--recycle-bin", fact)["entries"][1]["state"], state)

    def test_text_shows_what_json_holds(self):
        for options, title in (([], "QueryContextMenu 0x0000000F, 15 identifiers"),
                               (["--modern"], "CreateInstance 0x00000000, 8 commands")):
            options += [self.file.name, "--language", "de"]
            lines = self.run_client(*options).stdout.splitlines()
            self.assertEqual(lines[0], f"files: {title}")
            entries = self.answer(*options)["entries"]
            flat = [e for entry in entries for e in (entry, *entry.get("entries", []))]
            self.assertEqual(len(lines) - 1, len(flat))
            for line, entry in zip(lines[1:], flat):
                self.assertTrue(line.strip().startswith(entry.get("text", "--------")), line)

    def test_picking_starts_the_application_with_the_selection(self):
        many = [self.work / f"{number:03}" for number in range(100)]
        for path in many:
            path.write_text("")
        for paths in ([self.file], [self.work, self.file], many):
            report = self.work / "report.json"
            picked = self.answer("--pick", 0, *paths, NMARK_REPORT=str(report))["pick"]
            self.assertEqual(picked["result"], "0x00000000")
            self.assertEqual(json.loads(report.read_text())["paths"], [str(path) for path in paths])
            report.unlink()

    def test_starts(self):
        for offset, selection, verb, file, parameters in (
                (1, ["--drive", "D:"], "runas", "nmark.exe", "-cmd 102 "), (4, ["--bin"], "open", "nmark.exe", "-cmd 105 "),
                (7, ["--bin"], "open", "nmark.exe", "-cent "), (12, ["--bin"], "open", "/upgrade.html", "")):
            start, = self.answer("--pick", offset, *selection)["pick"]["starts"]
            self.assertEqual((start["verb"], start["file"][-len(file):]), (verb, file))
            self.assertTrue(start["parameters"].startswith(parameters), start)
        refused = self.answer("--pick", 15, self.file, code=6)["pick"]
        self.assertEqual((refused["result"], refused["starts"]), ("0x80004005", []))

    def test_commands_of_the_first_level_are_the_context_menus(self):
        many = [self.work / f"{number:03}" for number in range(100)]
        for path in many:
            path.write_text("")
        for selection in ([self.file], [self.work, "--language", "de"], [*many, "--icons", "off"]):
            _, wipe, product, _ = self.answer(*selection)["entries"]
            answer = self.answer("--modern", *selection)
            self.assertEqual(answer["entries"], [{**product, "entries": [wipe, *product["entries"]]}])
            self.assertEqual(answer["commands"], 8)
            for offset in (0, 7, 9, 10, 11, 12, 13, 14):
                with self.subTest(offset=offset):
                    for what in ("--pick", "--help-text"):
                        self.assertEqual(self.answer("--modern", what, offset, *selection), {
                            **answer, **{key: value for key, value in self.answer(what, offset, *selection).items()
                                         if key in ("pick", "helpText")}})
        self.assertEqual(self.answer("--modern", "--pick", 1, self.file, code=6)["pick"]["starts"], [])
        self.assertEqual(self.run_client("--modern", "--bin").returncode, 2)

    def test_help_texts(self):
        self.assertEqual(self.run_client("--help-text", 8, "--bin").stdout, "Wipe the swap file\n")
        refused = self.run_client("--help-text", 15, "--bin")
        self.assertEqual((refused.returncode, refused.stdout), (6, "GetCommandString 0x80004005\n"))

    def test_failures(self):
        with open("/dev/full", "wb") as full:
            finished = subprocess.run([PROGRAM, self.file], stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual((finished.returncode, finished.stderr), (5, b"rightclick: cannot write to standard output\n"))
        alone = shutil.copy(PROGRAM, self.work)  # without language files
        (self.work / "faulty/langs").mkdir(parents=True)
        faulty = shutil.copy(PROGRAM, self.work / "faulty")
        broken = self.work / "faulty/langs/xx.lang.txt"
        broken.write_text("LANG: xx\n\nTXT: broken\n", encoding="utf-8")
        for code, message, program, arguments in (
                (2, "exactly one", PROGRAM, []), (2, "exactly one", PROGRAM, [self.file, "--bin"]),
                (2, "--nope", PROGRAM, ["--nope"]), (2, "did you mean --pick?", PROGRAM, ["--pik", "3"]), (2, "--elevation", PROGRAM, ["--bin", "--elevation", "3"]),
                (3, "no such file: missing", PROGRAM, [self.file, "missing"]),
                (3, "no such drive: foo", PROGRAM, ["--drive", "foo"]),
                (5, "--shot needs Windows", PROGRAM, [self.file, "--shot", "x.png"]),
                (4, "language files", alone, ["--bin"]),
                (4, f"at line 3 in the following file. {broken}", faulty, ["--bin"])):
            with self.subTest(arguments):
                finished = self.run_client(*arguments, program=program)
                self.assertEqual((finished.returncode, finished.stdout), (code, ""), finished.stderr)
                self.assertIn(message, finished.stderr)
                self.assertEqual(finished.stderr.count("\n"), 1)


if __name__ == "__main__":
    unittest.main()
