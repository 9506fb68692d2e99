#!/usr/bin/env python3
"""Runs the translators' program over temporary files: interlang_test.py PROGRAM"""
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()

# Every kind of code unit that some format cannot hold, as language files write it.
ODD_TEXTS = {
    "BACKSLASHES": r"C:\x5Cnew\x5C\x5Cdir\x5C", "PLAIN": r"C:\dir \\n x\ ", "CONTROL": r"\x01a\0\a\b\x1F\x7Fb\r\n\tc\x02",
    "SURROGATES": r"\uD83D \uDE00\uDE00\uD83D \uD83D\uDE00", "BLANKS": r"\x20\x20 a  b\x20", "ONLY": r"\x20",
    "BREAKS": r"\none\n\ntwo\r\nthree\n", "XML": "<a href=\"b\">&amp;'</a>]]>", "PO": r'"q" #, fuzzy \" %1',
    "NONCHARACTERS": r"\uFEFFa\uFFFE\uFFFF\x85\u2028", "EMPTY": "", "odd key \\n <&\">": "x",
}


LANGS = pathlib.Path(__file__).resolve().parents[2] / "langs"
# Complete: the program's own English texts.
ENGLISH = dict(re.findall(r"^KEY: (.*)\nTEXT: (.*)$", next(LANGS.glob("*en.lang.txt")).read_text(encoding="utf-8"), re.M))


def language(code, texts):
    return f"LANG: {code}\n" + "".join(f"KEY: {key}\nTEXT: {text}\n" for key, text in texts.items())


class InterlangTest(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="interlang-"))
        self.addCleanup(shutil.rmtree, self.work)

    def write(self, name, text):
        (self.work / name).write_bytes(text if isinstance(text, bytes) else text.encode("utf-8"))

    def read(self, name):
        return (self.work / name).read_text(encoding="utf-8")

    def run_tool(self, *arguments, code=0):
        finished = subprocess.run([PROGRAM, *arguments], cwd=self.work, capture_output=True, text=True, encoding="utf-8",
                                  check=False)
        self.assertEqual(finished.returncode, code, finished.stdout + finished.stderr)
        return finished.stdout if finished.returncode < 2 or finished.stdout else finished.stderr

    def texts(self, name):
        """What the file holds, as the program itself exports it: key to target, None for a missing one."""
        code = next(line[6:] for line in self.read(name).splitlines() if line.startswith("LANG: "))
        exported = self.run_tool("export", name, "--lang", code, "--to", "xliff", "--reference-file", name, "--reference",
                                 code)
        return exported[exported.index("<body>"):]

    def test_each_fault_is_found_on_its_line(self):
        english = {**ENGLISH, "HINT": "Two words %1"}
        german = {"LANGUAGE": "Deutsch", "CXT_MENU_OPTIONS": "&Optionen...", "CXT_MENU_HELP": "&Hilfe", "HINT": "Wörter %1"}
        self.write("en.lang.txt", language("en", english))
        for check, line, changes, code in (
                (None, 0, {}, 0),
                (None, 0, {"HINT": r"Doppelt \x5C %1\n\t\u00e4 x"}, 0),
                (None, 0, {"HINT": None}, 0),
                ("placeholders", 9, {"HINT": "Wörter"}, 2),
                ("placeholders", 9, {"HINT": "Wörter %1 %2"}, 2),
                ("escapes", 9, {"HINT": r"\d %1"}, 2),
                ("escapes", 9, {"HINT": r"\x2 %1"}, 2),
                ("escapes", 9, {"HINT": r"\\n %1"}, 2),
                ("escapes", 9, {"HINT": "%1\\"}, 2),
                (None, 0, {"HINT": ""}, 0),
                ("accelerator-twice", 7, {"CXT_MENU_OPTIONS": "&Hinweise"}, 2),
                ("accelerator-missing", 7, {"CXT_MENU_HELP": "Rock && Hilfe&"}, 1),
                ("obsolete", 11, {"OLD": "alt"}, 1),
                ("untranslated", 9, {"HINT": "Two words %1"}, 1),
                ("untranslated", 3, {"LANGUAGE": "English"}, 1),
                (None, 0, {"CXT_MENU_OPTIONS": "&Options..."}, 0),
                ("blanks", 9, {"HINT": r"Wörter %1\x20"}, 1),
                ("repeated", 11, {"HINT": None, "HINT\nTEXT: %1\nKEY: HINT": "%1"}, 1),
                ("syntax", 10, {"HINT": "%1\nTEXT: zwei"}, 2),
                ("utf8", 9, {"HINT": b"W\xF6rter %1"}, 2),
                ("utf8", 9, {"HINT": b"\xED\xA0\x80 %1"}, 2)):
            with self.subTest(check, changes=changes):
                changed = {key: text for key, text in {**german, **changes}.items() if text is not None}
                if any(isinstance(text, bytes) for text in changed.values()):
                    hint = changed.pop("HINT")
                    self.write("de.lang.txt", language("de", changed).encode() + b"KEY: HINT\nTEXT: " + hint)
                else:
                    self.write("de.lang.txt", language("de", changed))
                found = json.loads(self.run_tool("check", "en.lang.txt", "de.lang.txt", "--json", code=code))
                expected = [(check, "de.lang.txt", line)] if check else []
                self.assertEqual([(f["check"], f["file"], f["line"]) for f in found["findings"]], expected)
                self.assertEqual((found["errors"], found["warnings"]), (int(code == 2), int(code == 1)))
                if check:
                    text = self.run_tool("check", "de.lang.txt", code=code)  # finds en.lang.txt by itself
                    severity = "error" if code == 2 else "warning"
                    self.assertRegex(text, rf"(?m)^de\.lang\.txt:{line}: {severity}: .*\[{check}\]$")
                    self.run_tool("check", "en.lang.txt", "de.lang.txt", f"--no-{check}")

    def test_only_english_must_be_complete(self):
        german = {**ENGLISH, "LANGUAGE": "Deutsch", "CXT_MENU_HELP": None, "CXT_MENU_OPTIONS": "", "NEW": "neu"}
        self.write("english.lang.txt", language("en", {**ENGLISH, "NEW": "new"}))
        self.write("de.lang.txt", language("de", {key: text for key, text in german.items() if text is not None}))
        off = ["--no-untranslated"]
        self.assertIn("de: 21 of 23 texts are translated, not CXT_MENU_HELP CXT_MENU_OPTIONS\n0 errors",
                      self.run_tool("check", "--folder", ".", *off))
        self.assertEqual(json.loads(self.run_tool("check", "--folder", ".", "--json", *off))["coverage"][0]["missing"], 1)
        self.assertIn("KEY: CXT_MENU_HELP\n", self.run_tool("check", "--folder", ".", "--consistency", *off, code=1))
        self.write("english.lang.txt", language("en", {**ENGLISH, "NEW": "", "CXT_MENU_HELP": r"\x20"}).replace(
            "KEY: CXT_MENU_OPTIONS", "KEY: OTHER"))
        text = self.run_tool("check", "--folder", ".", *off, code=2)
        self.assertRegex(text, r"english.lang.txt:0: error: en CXT_MENU_OPTIONS: missing \[missing\]")
        self.assertRegex(text, r"english.lang.txt:13: error: en CXT_MENU_HELP: empty \[empty\]")

    def test_filled_copies(self):
        self.work.joinpath("langs").mkdir()
        self.write("langs/00-en.lang.txt", language("en", {"LANGUAGE": "English", "A": "&One", "B": r"\x20two\n", "C": ""}))
        self.write("langs/de.lang.txt", language("de", {"A": "eins", "C": ""}) + language("fr", {"A": "", "OLD": "vieux"}))
        self.write("langs/de2.lang.txt", b"\xEF\xBB\xBF" + language("de", {"B": r"\x20", "LANGUAGE": "Deutsch"}).encode())
        self.write("langs/nb.lang.txt", "# whole\r\n" + language("nb", {"A": "en", "B": "to", "C": "tre"}))
        for arguments, told in (([], "4 files, 3 texts filled in, 0"), (["--delete"], "4 files, 3 texts filled in, 1")):
            self.assertIn(told, self.run_tool("fill", "-o", "out/langs", *arguments))
            self.write("out/langs/gone.lang.txt", "LANG: xx")
            self.write("out/langs/notes.txt", "")
        self.run_tool("fill", "--delete", "-o", "out/langs", "langs/")
        self.assertEqual(sorted(path.name for path in self.work.glob("out/langs/*")),
                         ["00-en.lang.txt", "de.lang.txt", "de2.lang.txt", "nb.lang.txt", "notes.txt"])
        for name in ("00-en", "nb"):
            self.assertEqual((self.work / f"out/langs/{name}.lang.txt").read_bytes(),
                             (self.work / f"langs/{name}.lang.txt").read_bytes())
        filled = self.read("out/langs/de.lang.txt")
        for part in ("KEY: A\nTEXT: eins\n", "KEY: A\nTEXT: &One\n", "KEY: B\nTEXT: \\x20two\\n\n", "KEY: OLD\nTEXT: vieux"):
            self.assertEqual(filled.count(part), 1, part)
        self.assertIn("KEY: LANGUAGE\nTEXT: Deutsch\n", self.read("out/langs/de2.lang.txt"))
        self.assertNotIn("English", filled)
        self.assertIn("would replace", self.run_tool("fill", "-o", "langs", code=2))
        self.write("langs/zz.lang.txt", "LANG: zz\nKEY: A\nKEY: B")
        self.assertIn("zz.lang.txt:3: syntax error", self.run_tool("fill", "-o", "other", code=2))
        self.assertFalse((self.work / "other").exists())

    def test_postfixes_and_fallen_back_texts_in_menus(self):
        self.write("en.lang.txt", language("en", {"CXT_MENU_WIPE_DRIVE": "&Wipe", "CXT_MENU_WIPE_DRIVE_TRASH": "Bin",
                                                  "CXT_MENU_EMPTY_POSTFIX": "(&w)"}))
        text = self.run_tool("check", "en.lang.txt", "--no-missing", code=2)
        self.assertRegex(text, r"lang.txt:5: error: en CXT_MENU_WIPE_DRIVE_TRASH: accelerator \"w\" .* line 3")
        self.assertRegex(text, r"lang.txt:5: warning: en CXT_MENU_WIPE_DRIVE_TRASH: no accelerator in \"Bin")
        self.assertNotIn("CXT_MENU_OPTIONS", text)

    def test_stats(self):
        self.write("en.lang.txt", language("en", {"LANGUAGE": "English", "A": "one two", "B": "b", "C": "c"}))
        self.write("ja.lang.txt", language("ja", {"LANGUAGE": "日本語", "A": "one two", "B": "", "D": "d"}))
        rows = json.loads(self.run_tool("stats", "--folder", ".", "--json"))["languages"]
        self.assertEqual(list(rows[1].values()), ["ja", "日本語", 50, 2, 1, 1, 1, 1])
        self.assertIn("ja    日本語       50 %         2/4", self.run_tool("stats", "--folder", "."))

    def test_format_and_merge(self):
        self.write("en.lang.txt", "# Notes\n" + language("en", {"NEW": "&New", "A": "one", "B": r"\x5Cn"}))
        self.write("de.lang.txt", "// Kopf\n\n# x\n" + language("de", {"OLD": "alt", "B": r"\x5Cn", "A": r"\d eins"}))
        heading = "#" * 40 + "\nLANG: de\n" + "#" * 40 + "\n\n"
        known = heading + "# one\nKEY: A\nTEXT: \\d eins\n\n# \\x5Cn\nKEY: B\nTEXT: \\x5Cn\n\n"
        old = "# Obsolete: en has no such keys.\n\n" + heading + "KEY: OLD\nTEXT: alt\n\n"
        formatted = "// Kopf\n\n# x\n\n" + known + old
        self.assertEqual(self.run_tool("format", "de.lang.txt"), formatted)
        merged = formatted.replace(heading + "# one", heading + "# &New\nKEY: NEW\nTEXT: \n\n# one")
        for _ in range(2):
            self.assertEqual(self.run_tool("merge", "--folder", ".", "--in-place"), "")
            self.assertEqual(self.read("de.lang.txt"), merged)
        self.write("en.lang.txt", language("en", {"OLD": "old again"}))
        self.assertIn("# old again\nKEY: OLD\nTEXT: alt\n\n# Obs", self.run_tool("merge", "de.lang.txt"))
        for broken in (b"LANG: de\nKEY: A\nKEY: B", b"LANG: de\nKEY: A\nTEXT: \xFF"):
            self.write("de.lang.txt", broken)
            self.assertIn("would be lost", self.run_tool("format", "de.lang.txt", "--in-place", code=2))
            self.assertEqual((self.work / "de.lang.txt").read_bytes(), broken)

    def test_formatting_keeps_every_code_unit(self):
        self.write("en.lang.txt", language("en", ODD_TEXTS))
        before = self.texts("en.lang.txt")
        self.run_tool("format", "en.lang.txt", "--in-place")
        self.assertEqual(self.texts("en.lang.txt"), before)

    def test_exchange_loses_nothing(self):
        self.write("en.lang.txt", language("en", {**ODD_TEXTS, "MISSING": "here", "NOT": "&there"}))
        self.write("de.lang.txt", "# Kopf\n" + language("de", {**ODD_TEXTS, "OBSOLETE": "alt"}))
        self.run_tool("format", "de.lang.txt", "--in-place")
        for form, checks in (("po", [["msgfmt", "--check", "-o", "checked.mo"], ["pofilter", "--progress=none"],
                                     ["msgcat", "--no-wrap", "-o", "again.po"], ["msgcat", "-w", "20", "-o", "narrow.po"]]),
                             ("xliff", [["xmllint", "--noout"], ["xliff2po", "--progress=none"]])):
            exported = f"de.{form}"
            self.run_tool("export", "en.lang.txt", "de.lang.txt", "--lang", "de", "--to", form, "-o", exported)
            for check in checks:
                command = [*check, exported, *(["x.po"] if check[0] == "xliff2po" else [])]
                if shutil.which(check[0]):
                    finished = subprocess.run(command, cwd=self.work, capture_output=True, text=True, check=False)
                    self.assertEqual((finished.returncode, "warning" in finished.stderr.lower()), (0, False), finished.stderr)
            for source in [exported, *(p.name for p in self.work.glob("*.po") if form == "po")]:
                shutil.copy(self.work / "de.lang.txt", self.work / "back.lang.txt")
                self.assertIn("--force", self.run_tool("import", source, "-o", "back.lang.txt", code=2))
                self.run_tool("import", source, "-o", "back.lang.txt", "--force")
                self.assertEqual(self.texts("back.lang.txt"), self.texts("de.lang.txt"), source)
                self.assertTrue(self.read("back.lang.txt").startswith("# Kopf\n"))

    def test_imports_of_other_programs(self):
        header = 'msgid ""\nmsgstr "Language: de\\nContent-Type: text/plain; charset=UTF-8\\n"\n\n'
        body = '<xliff version="1.2"><file source-language="en" target-language="de"><body><group>%s</group></body></file></xliff>'
        unit = '<trans-unit id="A"><source>a</source>%s</trans-unit>'
        for content, result in (
                (header + 'msgctxt "A"\nmsgid "a"\nmsgstr ""\n"x"\n"y"\n#, fuzzy\nmsgctxt "B"\nmsgid "b"\nmsgstr "z"\n',
                 "# a\nKEY: A\nTEXT: xy\n"),
                (header + 'msgctxt "A"\nmsgid "a"\nmsgid_plural "b"\nmsgstr[0] "x"', "line 6: not understood"),
                (header + 'msgctxt "A"\nmsgid "a\nmsgstr "x"', "line 5: a string without its end"),
                (header + 'msgid "a"\nmsgstr "x"', "without msgctxt"),
                (header.replace("UTF-8", "ISO-8859-1"), "charset"),
                (header + 'msgctxt "A"\nmsgid "a"\nmsgstr ""', "no translated texts"),
                (body % (unit % "<target>x\r\ny&#x20AC;<![CDATA[<]]></target>"), "KEY: A\nTEXT: x\\ny€<\n"),
                (body % (unit % "<target/>"), "no translated texts"),
                (body % (unit % '<target state="final"/>'), "KEY: A\nTEXT: \n"),
                (body % (unit % "<target>x<x id='1'/></target>"), "elements within a text"),
                (body % (unit % "<target>x"), "line 1"), ("<tmx/>", "no XLIFF")):
            with self.subTest(content):
                self.write("in", content)
                self.assertIn(result, self.run_tool("import", "in", code=0 if "KEY:" in result else 2))

    def test_what_would_be_lost_is_refused(self):
        self.write("en.lang.txt", language("en", {"A": "one"}))
        two = language("de", {"A": "eins"}) + language("fr", {"A": "un"})
        mac = language("de", {"A": "eins"}).replace("\n", "\r")
        self.write("two.lang.txt", two)
        self.write("mac.lang.txt", mac)
        self.write("de.po", self.run_tool("export", "two.lang.txt", "--lang", "de", "--to", "po"))
        self.assertIn("fr", self.run_tool("import", "de.po", "-o", "two.lang.txt", "--force", code=2))
        self.run_tool("format", "--in-place", "mac.lang.txt", code=2)
        self.assertEqual((self.read("two.lang.txt"), (self.work / "mac.lang.txt").read_bytes()), (two, mac.encode()))
        with open("/dev/full", "wb") as full:
            self.assertEqual(subprocess.run([PROGRAM, "stats"], cwd=self.work, stdout=full, check=False,
                                            stderr=subprocess.DEVNULL).returncode, 2)

    def test_files_that_came_back_from_other_programs(self):
        self.write("en.lang.txt", language("en", {"A": "one", "B": "two"}))
        self.write("de.lang.txt", language("de", {"A": "eins", "B": "zwei"}))
        xliff = self.run_tool("export", "de.lang.txt", "--lang", "de", "--to", "xliff")
        self.write("de.xlf", xliff.replace(">eins<", '>\n <mrk mtype="seg">eins</mrk>\n<')
                   .replace('state="translated">zwei', 'state="needs-review-translation">zwei'))
        imported = self.run_tool("import", "de.xlf")
        self.assertIn("TEXT: eins\n", imported)
        self.assertNotIn("zwei", imported)
        po = self.run_tool("export", "de.lang.txt", "--lang", "de", "--to", "po")
        self.write("de.po", po.replace('msgctxt "B"', '#, fuzzy\n#~ msgctxt "OLD"\n#~ msgid "x"\n#~ msgstr "y"\n\nmsgctxt "B"'))
        self.assertIn("TEXT: zwei\n", self.run_tool("import", "de.po"))

    def test_new_language(self):
        self.write("en.lang.txt", "# Notes\n" + language("en", {"LANGUAGE": "English", "A": "one"}))
        self.run_tool("new", "fr", "--folder", ".", "-o", "fr.lang.txt")
        self.assertEqual(self.read("fr.lang.txt"), "# Notes\n\n" + "#" * 40 + "\nLANG: fr\n" + "#" * 40 + "\n\n# Localized "
                         "language name\nKEY: LANGUAGE\nTEXT: \n\n# one\nKEY: A\nTEXT: \n\n")
        self.assertIn("already", self.run_tool("new", "fr", "--folder", ".", code=2))

    def test_show(self):
        self.write("en.lang.txt", language("en", {"CXT_MENU_ABOUT": "A&bout %1", "CXT_MENU_WIPE_DRIVE": "R&&D &",
                                                  "CXT_MENU_USER_TRASH": "&Me"}))
        lines = self.run_tool("show", "--folder", ".", "--lang", "en", "--kind", "drive", "--system-drive", "--elevation",
                              "2").splitlines()
        self.assertEqual(lines[1:3], ["R&D   (grayed)", "CXT_MENU_CLEAN_DRIVE"])
        self.assertIn("    _M_e  (grayed)", lines)
        self.assertIn("    A_b_out Nullmark", lines)

    def test_wrong_usage(self):
        for arguments in ((), ("check", "--nope"), ("show",), ("show", "--lang", "en", "--kind", "x"), ("import",)):
            with self.subTest(arguments):
                finished = subprocess.run([PROGRAM, *arguments], capture_output=True, check=False)
                self.assertGreaterEqual(finished.returncode, 100)
        self.assertIn("cannot open missing", self.run_tool("check", "missing", code=2))
        self.write("de.lang.txt", language("de", {"A": "x"}))
        self.assertIn("--reference-file", self.run_tool("check", "de.lang.txt", code=2))
        self.write("english.lang.txt", "LANG: en\nKEY: A\nTEXT: one\nKEY: B\nKEY: C")
        for command in ("check", "stats", "format", "merge"):
            self.assertIn("english.lang.txt:5: syntax error", self.run_tool(command, "de.lang.txt", code=2))


if __name__ == "__main__":
    unittest.main()
