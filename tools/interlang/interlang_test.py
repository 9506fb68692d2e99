#!/usr/bin/env python3
"""Checks, counts, rewrites and shows language files with the translators' program: interlang_test.py PROGRAM"""
import json
import os
import pathlib
import re
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "testing"))
from interlang_fixture import ENGLISH, ODD_TEXTS, PROGRAM, InterlangTest, language  # noqa: E402


class FilesTest(InterlangTest):
    def test_each_fault_is_found_on_its_line(self):
        english = {**ENGLISH, "HINT": "Two words %1"}
        german = {"LANGUAGE": "Deutsch", "CXT_MENU_OPTIONS": "&Optionen...", "CXT_MENU_HELP": "&Hilfe", "HINT": "Wörter %1"}
        self.write("en.lang.txt", language("en", english))
        for check, line, changes, code in (
                (None, 0, {}, 0),
                (None, 0, {"HINT": r"Doppelt \x5C %1\u00e4 x"}, 0),
                (None, 0, {"HINT": None}, 0),
                ("placeholders", 9, {"HINT": "Wörter"}, 2),
                ("placeholders", 9, {"HINT": "Wörter %1 %2"}, 2),
                ("escapes", 9, {"HINT": r"\d %1"}, 2),
                ("escapes", 9, {"HINT": r"\x2 %1"}, 2),
                ("escapes", 9, {"HINT": r"\\n %1"}, 2),
                ("escapes", 9, {"HINT": "%1\\"}, 2),
                (None, 0, {"HINT": ""}, 0),
                ("accelerator-twice", 7, {"CXT_MENU_OPTIONS": "&Hinweise..."}, 2),
                ("accelerator-missing", 7, {"CXT_MENU_HELP": "Rock && Hilfe&"}, 1),
                ("obsolete", 11, {"OLD": "alt"}, 1),
                ("untranslated", 9, {"HINT": "Two words %1"}, 1),
                ("untranslated", 3, {"LANGUAGE": "English"}, 1),
                (None, 0, {"CXT_MENU_OPTIONS": "&Options..."}, 0),
                ("placeholders", 9, {"HINT": "Wörter %1 %3"}, 2),
                ("placeholders", 9, {"HINT": "Wörter %1 %s {0}"}, 2),
                ("empty", 9, {"HINT": r"\x20"}, 2),
                ("accelerator-several", 9, {"HINT": "W&örter &%1"}, 1),
                ("ellipsis", 9, {"HINT": "Wörter %1…"}, 1),
                ("ellipsis", 5, {"CXT_MENU_OPTIONS": "&Optionen"}, 1),
                (None, 0, {"CXT_MENU_OPTIONS": "設定...(&O)"}, 0),
                ("control", 9, {"HINT": r"W\u00ADörter %1"}, 1),
                ("control", 9, {"HINT": r"Wört\ter %1"}, 1),
                ("control", 9, {"HINT": r"\u202Etrev %1\u202C"}, 1),
                ("control", 9, {"HINT": r"\u2066Wörter %1"}, 1),
                (None, 0, {"HINT": r"\u2066Wörter\u2069 \u200F%1\u200D."}, 0),
                ("length", 9, {"HINT": "W" * 49 + " %1"}, 1),
                ("continuation", 11, {"HINT": "Wörter %1\n\nund"}, 1),
                ("continuation", 10, {"HINT": "Wörter %1\nTXT: und"}, 1),
                ("placeholders", 9, {"HINT": "Wörter %1 %-5d"}, 2),
                (None, 0, {"HINT": "50 % um 50%-os %1"}, 0),
                ("lonely-key", 10, {"HINT": "%1\nKEY: X\n#~ TEXT: x"}, 2),
                ("lonely-key", 10, {"HINT": "%1\nKEY: X\n#~ TEXT: x\nLANG: de\n#~ KEY: Y\n#~ TEXT:"}, 2),
                ("lonely-key", 10, {"HINT": "%1\nKEY: X\nLANG: de\nKEY: HINT\nLANG: fr\nTEXT: W %1"}, 2),
                ("commented-out", 11, {"HINT": "W %1\n#~ KEY: X\n#~ TEXT: x"}, 1),
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
        text = self.run_tool("check", "de.lang.txt", code=2)  # finds the English file by itself
        self.assertRegex(text, r"(?m)^de\.lang\.txt:9: error: bytes that are not UTF-8 \[utf8\]$")
        self.run_tool("check", "de.lang.txt", "--no-utf8")

    def test_case_of_accelerators_in_every_alphabet(self):
        self.write("en.lang.txt", language("en", ENGLISH))
        for letters, same in (("Șș", True), ("Țț", True), ("Όό", True), ("Şş", True), ("İi", True), ("Яя", True), ("Ёё", True),
                              ("Ğğ", True), ("Ÿÿ", True), ("ßs", False), ("×÷", False), ("aä", False)):
            with self.subTest(letters):
                self.write("ro.lang.txt", language("ro", {"CXT_MENU_OPTIONS": f"&{letters[0]}...", "CXT_MENU_HELP": f"&{letters[1]}"}))
                self.assertEqual("accelerator-twice" in self.run_tool("check", "ro.lang.txt", code=2 if same else 0), same)

    def test_changed_english_texts(self):
        self.write("en.lang.txt", language("en", ENGLISH))
        german = language("de", {"CXT_MENU_HELP": "&Hilfe"})
        for above, changed in (("# &Help\n", False), ("#&Help\n", False), ("# &Hlp\n", True), ("// &Hlp\n", False),
                               ("# &Hlp\n\n", False), ("# &Hlp\n// note\n", False), ("# note\n# &Help\n", False)):
            with self.subTest(above):
                self.write("de.lang.txt", german.replace("KEY", above + "KEY"))
                text = self.run_tool("check", "de.lang.txt", code=int(changed))
                self.assertEqual('translated from "&Hlp"; it is now in en: "&Help" [changed]' in text, changed)
        self.write("de.lang.txt", "LANG: de\n#, empty\n# &Hlp\nKEY: CXT_MENU_HELP\nTEXT:\n")
        text = self.run_tool("check", "de.lang.txt", code=1)
        self.assertIn('translated from "&Hlp"; it is now in en: "&Help" [changed]\nde: 1 of 22 texts', text)

    def test_files_without_texts_and_odd_files(self):
        self.write("en.lang.txt", language("en", ENGLISH))
        text = language("nb", {"CXT_MENU_HELP": "&Hjelp"})
        for name, content, told in (
                ("nb.lang.txt", b"", "error: no texts: the file is empty [no-texts]"),
                ("nb.lang.txt", text.replace("\n", "\r").encode(), "no texts: its lines end in CR"),
                ("nb.lang.txt", b"\0" * 500, "no texts: nothing but zeros"),
                ("nb.lang.txt", text.encode("utf-16le"), "zeros in it; UTF-16"),
                ("nb.lang.txt", b"# soon\n", "no texts: there is no TEXT:"),
                ("nb.lang.txt", b"LANG: nb\n#~ KEY: CXT_MENU_HELP\n#~ TEXT:", "nb: 0 of 22 texts"),
                ("nb.lang.txt", b"LANG: nb\nKEY: A\nKEY: B", "nb.lang.txt:3: error: syntax error; nothing below is read: a KEY: "
                 "after the KEY: of line 2, which has no TEXT: [syntax]"),
                ("nb.lang.txt", b"LANG: nb\nKEY: A\nTXT: B\nKEY: C", "TEXT: was probably meant in line 3"),
                ("nb.lang.txt", b"LANG: nb\nKEY A", "KEY: was probably meant in line 2"),
                ("nb.lang.txt", b"LANG: nb\nKEY: A\n#~ TEXT: B\nKEY: C", "line 3 still begins with #~"),
                ("nb.lang.txt", b"LANG: nb\n#~ KEY: A\nTEXT: B\n", "no KEY: for the text of line 3; line 2 still begins"),
                ("nb.lang.txt", b"KEY: A\nTEXT: B\n", "there is no LANG: above the text of line 2"),
                ("00-no.lang.txt", text.encode(), "named after no, but there is nb"),
                ("menu.lang.txt", text.encode(), ""), ("nb.lang.TXT", text.encode(), "never read"),
                ("nb.txt", text.encode(), "never read"), ("notes.txt", b"", ""),
                ("xx.lang.txt", text.replace("nb", "xx").encode(), "xx is no code of ISO 639 [language-code]"),
                ("x.lang.txt", text.replace("nb", "NB").encode(), "reports nb, in lower case"),
                ("x.lang.txt", text.replace("nb", "nob").encode(), "reports nb, the code of ISO 639-1"),
                ("x.lang.txt", text.replace("nb", "no").encode(), "Windows reports nb [language-code]"),
                ("x.lang.txt", text.replace("nb", "nb-").encode(), "has not the form of a code"),
                ("x.lang.txt", text.replace("nb", "nb-xx").encode(), "xx is no region of ISO 3166"),
                ("x.lang.txt", text.replace("nb", "sr-Latn-RS").encode(), ""),
                ("nb.lang.txt", text.replace("j", r"\x7F").encode(), r"the character \x7F in it"),
                ("nb.lang.txt~", text.encode(), "never read"), ("nb.lang.txt.bak", text.encode(), "never read"),
                (".nb.lang.txt.swp", b"", ""),
                ("x.lang.txt", text.replace("nb", "zh-Hant").encode(), "")):
            with self.subTest(name=name, content=content):
                self.write(name, content)
                found = self.run_both("check", "--folder", ".", code=None)[0]
                (self.work / name).unlink()
                self.assertIn(told or "0 errors, 0 warnings", found)
        self.write("nb.lang.txt", text)
        self.write("nb2.lang.txt", text)
        self.assertIn("nb2.lang.txt:3: warning: nb CXT_MENU_HELP: replaces the text of ./nb.lang.txt:3 [two-files]",
                      self.run_tool("check", "--folder", ".", code=1))

    def german_file(self):
        self.write("en.lang.txt", language("en", {"A": "one"}))
        self.write("de.lang.txt", language("de", {"A": "eins"}))
        return self.work / "de.lang.txt"

    def test_writing(self):
        german = self.german_file()
        os.link(german, self.work / "before")
        self.write("de.lang.txt.0.new", "somebody's")
        self.run_tool("format", "--in-place", "de.lang.txt")
        self.assertNotIn("# one", self.read("before"), "replaced, not overwritten")
        self.assertIn("# one\nKEY: A\nTEXT: eins\n", self.read("de.lang.txt"))
        self.run_tool("export", "--folder", ".", "--lang", "de", "-o", "de.po")
        self.run_tool("export", "--folder", ".", "--lang", "de", "--to", "xliff", "-o", "de.po", "--force")
        self.assertTrue(self.read("de.po").startswith("<?xml"))
        self.assertEqual(self.read("de.lang.txt.0.new"), "somebody's")
        self.assertEqual(len(list(self.work.iterdir())), 5)
        german.chmod(0o440)
        self.write("en.lang.txt", language("en", {"A": "two"}))
        self.assertIn("read-only", self.run_tool("merge", "--in-place", "--folder", ".", code=2))

    def test_writing_keeps_what_belongs_to_the_file(self):
        german = self.german_file()
        german.chmod(0o640)
        if os.getuid() == 0:
            os.chown(german, 12, 34)
        os.setxattr(german, "user.note", b"Jo's")
        self.run_tool("format", "--in-place", "de.lang.txt")
        self.assertIn("# one\n", self.read("de.lang.txt"))
        status = german.stat()
        self.assertEqual(status.st_mode & 0o777, 0o640)
        if os.getuid() == 0:
            self.assertEqual((status.st_uid, status.st_gid), (12, 34))
        self.assertEqual(os.getxattr(german, "user.note"), b"Jo's")

    def test_writing_to_what_is_no_regular_file(self):
        self.german_file()
        os.symlink("de.lang.txt", self.work / "link.lang.txt")
        self.run_tool("format", "--in-place", "link.lang.txt")
        self.assertTrue((self.work / "link.lang.txt").is_symlink())
        self.assertIn("# one\n", self.read("de.lang.txt"))
        (self.work / "link.lang.txt").unlink()
        exported = subprocess.run([PROGRAM, "export", "--folder", ".", "--lang", "de", "-o", "/dev/stdout"], cwd=self.work,
                                  stdout=subprocess.PIPE, text=True, check=True).stdout
        self.assertIn('msgctxt "A"', exported)
        os.symlink("loop", self.work / "loop")
        self.assertIn("cannot write", self.run_tool("export", "--folder", ".", "--lang", "de", "-o", "loop", code=2))
        self.assertTrue((self.work / "loop").is_symlink())
        os.mkfifo(self.work / "pipe")
        with subprocess.Popen(["cat", "pipe"], cwd=self.work, stdout=subprocess.PIPE) as reader:
            self.run_tool("export", "--folder", ".", "--lang", "de", "-o", "pipe")
            self.assertIn(b'msgctxt "A"', reader.communicate()[0])
        self.assertTrue((self.work / "pipe").is_fifo())
        os.symlink("/dev/full", self.work / "full")
        self.assertIn("cannot write", self.run_tool("export", "--folder", ".", "--lang", "de", "-o", "full", "--force", code=2))
        self.assertTrue(pathlib.Path("/dev/full").is_char_device())
        with open("/dev/full", "wb") as full:
            self.assertEqual(subprocess.run([PROGRAM, "stats", "--folder", "."], cwd=self.work, stdout=full, check=False,
                                            stderr=subprocess.DEVNULL).returncode, 2)

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
        self.assertIn("ja: 50 % are less than 51", self.run_both("stats", "--folder", ".", "--fail-under", "51", code=2)[1])
        self.run_tool("stats", "--folder", ".", "--fail-under", "50")
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
        merged = formatted.replace(heading + "# one", heading + "# &New\n#~ KEY: NEW\n#~ TEXT: \n\n# one")
        for _ in range(2):
            self.assertEqual(self.run_tool("merge", "--folder", ".", "--in-place"), "")
            self.assertEqual(self.read("de.lang.txt"), merged)
        self.write("en.lang.txt", language("en", {"OLD": "old again"}))
        self.assertIn("# old again\nKEY: OLD\nTEXT: alt\n\n# Obs", self.run_tool("merge", "de.lang.txt"))
        self.write("de.lang.txt", "LANG: de\n// eins\nKEY: A\nTEXT: 1\n// zwei\n# one\nKEY: A\nTEXT: 2\n"
                                  "// drei\n#~ KEY: A\n#~ TEXT:\n")
        text, errors = self.run_both("format", "de.lang.txt", code=1)
        self.assertIn("// drei\n// eins\n// zwei\n# one\nKEY: A\nTEXT: 2\n", text)
        self.assertIn('de.lang.txt:4: de A: left out, since line 8 replaces it: "1"', errors)
        for broken in (b"LANG: de\nKEY: A\nKEY: B", b"LANG: de\nKEY: A\nTEXT: \xFF", b"LANG: de\nKEY: A\n#~ TEXT: x"):
            self.write("de.lang.txt", broken)
            self.assertIn("would be lost", self.run_tool("format", "de.lang.txt", "--in-place", code=2))
            self.assertEqual((self.work / "de.lang.txt").read_bytes(), broken)

    def test_formatting_keeps_every_code_unit(self):
        self.write("en.lang.txt", language("en", ODD_TEXTS))
        before = self.texts("en.lang.txt")
        self.run_tool("format", "en.lang.txt", "--in-place")
        self.assertEqual(self.texts("en.lang.txt"), before)

    def test_new_language(self):
        self.write("en.lang.txt", "# Notes\n" + language("en", {"LANGUAGE": "English", "A": "one"}))
        self.run_tool("new", "fr", "--folder", ".", "-o", "fr.lang.txt")
        self.assertEqual(self.read("fr.lang.txt"), "# Notes\n\n" + "#" * 40 + "\nLANG: fr\n" + "#" * 40 + "\n\n# Localized "
                         "language name\n#~ KEY: LANGUAGE\n#~ TEXT: \n\n# one\n#~ KEY: A\n#~ TEXT: \n\n")
        self.assertIn("already", self.run_tool("new", "fr", "--folder", ".", code=2))
        for code in ("", "x/../y", "x\nKEY: A", "de-", "de--AT"):
            self.assertIn("no code of a language", self.run_tool("new", code, "--folder", ".", code=2))

    def test_show(self):
        self.write("en.lang.txt", language("en", {"CXT_MENU_ABOUT": "A&bout %1", "CXT_MENU_WIPE_DRIVE": "R&&D &",
                                                  "CXT_MENU_USER_TRASH": "&Me"}))
        lines = self.run_tool("show", "--folder", ".", "--lang", "en", "--kind", "drive", "--system-drive", "--elevation",
                              "2").splitlines()
        self.assertEqual(lines[1:3], ["R&D   (grayed)", "CXT_MENU_CLEAN_DRIVE"])
        self.assertIn("    _M_e  (grayed)", lines)
        self.assertIn("    A_b_out Nullmark", lines)
        self.write("de.lang.txt", "LANG: de\nKEY: CXT_MENU_HELP\nTEXT: &Hilfe\nLANG: de\nx\n")
        text, errors = self.run_both("show", "--folder", ".", "--lang", "de", code=2)
        self.assertIn("    _H_ilfe\n", text)
        self.assertIn("de.lang.txt:5: syntax error; what stands below is not shown", errors)
        self.assertIn("de.lang.txt:5: syntax error", self.run_tool("export", "--folder", ".", "--lang", "de", code=2))

    def test_documents_made_from_the_options(self):
        man = self.run_tool("--man")
        finished = subprocess.run(["groff", "-man", "-ww", "-Tutf8", "-P-cbou"], input=man, capture_output=True, text=True, check=True)
        self.assertEqual(finished.stderr, "")
        for other in ("rightclick", "nmshell-setup"):
            man = subprocess.run([PROGRAM.parent / other, "--man"], capture_output=True, text=True, check=True).stdout
            made = subprocess.run(["groff", "-man", "-ww", "-Tutf8"], input=man, capture_output=True, text=True, check=True)
            self.assertEqual((made.stderr, "Exit codes" in made.stdout), ("", True), other)
        page = " ".join(finished.stdout.replace("\u2010\n", "").split())
        for command in ("check", "stats", "format", "merge", "fill", "new", "export", "import", "show"):
            for option in re.findall(r"--[a-z][a-z-]+", self.run_tool(command, "--help")):
                self.assertIn(option, page, command)
        self.write("completion", self.run_tool("--completion", "bash"))
        for words, expected in (("interlang ch", "check"), ("interlang import --st", "--strict"), ("interlang --vers", "--version")):
            script = f'. ./completion; COMP_WORDS=({words}); COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1)); _interlang; echo "${{COMPREPLY[*]}}"'
            self.assertEqual(subprocess.run(["bash", "-c", script], cwd=self.work, capture_output=True, text=True,
                                            check=True).stdout, expected + "\n")

    def test_wrong_usage(self):
        for arguments in ((), ("check", "--nope"), ("show",), ("show", "--lang", "en", "--kind", "x"), ("import",)):
            with self.subTest(arguments):
                self.assertEqual(self.run_both(*arguments, code=2)[1].count("\n"), 1)
        for arguments, meant in ((("chek",), "check"), (("check", "--jsn"), "--json"), (("export", "--language=de"), ""),
                                 (("stats", "--fail-under", "101"), ""), (("zzzzzz",), "")):
            errors = self.run_both(*arguments, code=2)[1]
            self.assertEqual(f"(did you mean {meant}?)" in errors, bool(meant), errors)
        self.assertRegex(self.run_tool("--version"), r"^interlang \d+\.\d+\.\d+\n$")
        self.assertIn("cannot open missing", self.run_tool("check", "missing", code=2))
        self.write("de.lang.txt", language("de", {"A": "x"}))
        self.assertIn("--reference-file", self.run_tool("check", "de.lang.txt", code=2))
        self.write("english.lang.txt", "LANG: en\nKEY: A\nTEXT: one\nKEY: B\nKEY: C")
        for command in (["check"], ["stats"], ["format"], ["merge"], ["show", "--lang", "de"]):
            self.assertIn("english.lang.txt:5: syntax error", self.run_tool(*command, "de.lang.txt", code=2))


if __name__ == "__main__":
    unittest.main()
