#!/usr/bin/env python3
"""Exchanges language files with translators' programs: interlang_exchange_test.py PROGRAM"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "testing"))
from interlang_fixture import ENGLISH, ODD_TEXTS, InterlangTest, language  # noqa: E402


SCHEMAS = pathlib.Path("/usr/share/php/Symfony/Component/Translation/Resources/schemas")
CATALOG = f"""<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog">
<uri name="http://www.w3.org/2001/xml.xsd" uri="{SCHEMAS.as_uri()}/xml.xsd"/></catalog>"""


class ExchangeTest(InterlangTest):
    def test_exchange_loses_nothing(self):
        self.write("en.lang.txt", language("en", {**ODD_TEXTS, "MISSING": "here", "NOT": "&there"}))
        self.write("de.lang.txt", "# Kopf\n" + language("de", {**ODD_TEXTS, "OBSOLETE": "alt"}))
        self.run_tool("format", "de.lang.txt", "--in-place")
        self.write("catalog.xml", CATALOG)
        for form, checks in (("po", [["msgfmt", "--check", "-o", "checked.mo"], ["pofilter", "--progress=none"],
                                     ["msgcat", "--no-wrap", "-o", "again.po"], ["msgcat", "-w", "20", "-o", "narrow.po"]]),
                             ("xliff", [["xmllint", "--noout", "--nonet", "--schema", SCHEMAS / "xliff-core-1.2-strict.xsd"],
                                        ["xliff2po", "--progress=none"]])):
            exported = f"de.{form}"
            self.run_tool("export", "en.lang.txt", "de.lang.txt", "--lang", "de", "--to", form, "-o", exported)
            for check in checks:
                command = [*check, exported, *(["x.po"] if check[0] == "xliff2po" else [])]
                if shutil.which(check[0]):
                    finished = subprocess.run(command, cwd=self.work, capture_output=True, text=True, check=False,
                                              env={**os.environ, "XML_CATALOG_FILES": "catalog.xml"})
                    self.assertEqual((finished.returncode, "warning" in finished.stderr.lower()), (0, False), finished.stderr)
            for source in [exported, *(p.name for p in self.work.glob("*.po") if form == "po")]:
                shutil.copy(self.work / "de.lang.txt", self.work / "back.lang.txt")
                self.run_tool("import", source, "-o", "back.lang.txt")
                self.assertEqual(self.texts("back.lang.txt"), self.texts("de.lang.txt"), source)
                self.assertTrue(self.read("back.lang.txt").startswith("# Kopf\n"))

    def test_imports_of_other_programs(self):
        self.work.joinpath("langs").mkdir()
        self.write("langs/en.lang.txt", language("en", {"A": "a"}))
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
                (header + '#. The text is empty.\nmsgctxt "A"\nmsgid "a"\nmsgstr ""', "no translated texts"),
                (header + '# The text is empty.\nmsgctxt "A"\nmsgid "a"\nmsgstr ""', "#, empty\n# a\nKEY: A\nTEXT: \n"),
                (header + '#, nofuzzy-format\nmsgctxt "A"\nmsgid "a"\nmsgstr "x"', "KEY: A\nTEXT: x\n"),
                (header + '#, c-format, fuzzy\nmsgctxt "A"\nmsgid "a"\nmsgstr "x"', "no translated texts"),
                (body % (unit % "<target>x\r\ny&#x20AC;<![CDATA[<]]></target>"), "KEY: A\nTEXT: x\\ny€<\n"),
                (body % (unit % "<target/>"), "no translated texts"),
                (body % (unit % "<target>x</target>").replace('"A"', '"A" approved="no"'), "no translated texts"),
                (body % (unit % "<target>\n <mrk>a.</mrk>\n <mrk>b. </mrk><mrk>c</mrk><mrk>d</mrk>\n</target>"), "KEY: A\nTEXT: a. b. cd\n"),
                (body % "" + "<xliff/>", "a second element"), (body % (unit % "<target>\1</target>"), "line 1: a control"),
                (body % (unit % '<target state="final"/>'), "#, empty\n# a\nKEY: A\nTEXT: \n"),
                (header + r'msgctxt "A" msgid "a"'.replace(" msgid", "\nmsgid") + '\nmsgstr "\\x41\\102" "\\303\\244" "b"',
                 "KEY: A\nTEXT: ABäb\n"),
                (header + 'msgctxt "A"\nmsgid "a"\nmsgstr "\\377"', "line 7: escapes that give no UTF-8"),
                (header.replace("de", r"de\nLast-Translator: \377") + 'msgctxt "A"\nmsgid "a"\nmsgstr "x"', "escapes that give no UTF-8"),
                (header + 'msgctxt "A"\nmsgid "a"\nmsgstr "x" y', "line 6: a quote"),
                ((body % (unit % "<target>ä</target>")).encode("utf-16"), "KEY: A\nTEXT: ä\n"),
                (re.sub(r"<(/?)(?=\w)", r"<\1x:", (body % (unit % "<target>p</target>"))).replace(
                    "<x:xliff", '<x:xliff xmlns:x="urn:oasis:names:tc:xliff:document:1.2"'), "KEY: A\nTEXT: p\n"),
                (body % ('<trans-unit xmlns="urn:other" id="A"/>' + unit % "<target>o</target>"), "KEY: A\nTEXT: o\n"),
                ('<xliff xmlns="urn:oasis:names:tc:xliff:document:2.0"/>', "no XLIFF 1.2"),
                (body.replace("<group>", "<group>" * 20000) % "", "line 1: elements nested more than 200 deep"),
                ('<!DOCTYPE xliff><xliff/>', "a document type"), ('<?xml encoding="latin1"?><xliff/>', "charset"),
                ("<xliff>\0</xliff>", "line 1: a control"), ("<!--", "line 1"), ("<a b='", "line 1"), ("<", "line 1"),
                *((hidden + "<b>" * 400000, "line 1") for hidden in ('<a">', "<a b\"='1'>", '<a=">', '<?xml a="?><!-- "?>', "<?><!--?>")),
                *((body % (unit % f"<target>{no}</target>"), "no character") for no in ("&#0;", "&#xD800;", "&#1;", "&#x110000;", "&#65", "&x;", "&")),
                (header.replace("de", "../de") + 'msgctxt "A"\nmsgid "a"\nmsgstr "x"', "no code of a language"),
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
        self.write("fr.lang.txt", language("fr", {"A": "un"}))
        self.write("readme.txt", "Read me")
        for target in ("fr.lang.txt", "readme.txt"):
            before = self.read(target)
            self.run_tool("import", "de.po", "-o", target, code=2)
            self.assertEqual(self.read(target), before)
        self.assertIn("1 taken, 0 kept", self.run_tool("import", "de.po", "-o", "fr.lang.txt", "--force"))
        self.assertIn("TEXT: un\n", self.read("fr.lang.txt"))
        self.run_tool("format", "--in-place", "mac.lang.txt", code=2)
        self.assertEqual((self.read("two.lang.txt"), (self.work / "mac.lang.txt").read_bytes()), (two, mac.encode()))

    def test_partial_imports_keep_what_they_lack(self):
        english = {"A": "one", "B": "two", "C": "three", "D": "four"}
        self.write("en.lang.txt", language("en", english))
        self.write("de.lang.txt", "# Kopf\n" + language("de", {"A": "eins", "B": "zwei", "C": "drei", "OLD": "alt"})
                   .replace("KEY: B", "// fragen\n# two\nKEY: B") + "# Ende\n")
        po = self.run_tool("export", "de.lang.txt", "--lang", "de")
        entries = po.split("\n\n")
        self.write("part.po", "\n\n".join([entries[0], entries[1].replace("eins", "EINS").replace("msgctxt", "# sicher\nmsgctxt"),
                                           entries[3].replace("drei", "DREI").replace("msgctxt", "#, fuzzy\nmsgctxt")]))
        self.assertEqual(self.run_tool("import", "part.po", "-o", "de.lang.txt"),
                         "de.lang.txt: 1 taken, 3 kept, 1 fuzzy left out\n")
        text = self.read("de.lang.txt")
        for part in ("# Kopf\n", "# sicher\n# one\nKEY: A\nTEXT: EINS\n", "// fragen\n# two\nKEY: B\nTEXT: zwei\n",
                     "# three\nKEY: C\nTEXT: drei\n", "KEY: OLD\nTEXT: alt\n", "\n# Ende\n"):
            self.assertEqual(text.count(part), 1, part + text)
        self.assertIn("# // fragen\n", self.run_tool("export", "de.lang.txt", "--lang", "de"))
        self.run_tool("import", "part.po", "-o", "de.lang.txt", "--replace")
        self.assertEqual(re.findall("^TEXT: (.*)", self.read("de.lang.txt"), re.M), ["EINS"])

    def test_unknown_keys_and_other_sources(self):
        self.write("en.lang.txt", language("en", {"A": "one", "B": "two", "C": "two"}))
        self.write("de.lang.txt", language("de", {"A": "eins"}))
        header = 'msgid ""\nmsgstr "Language: de\\nContent-Type: text/plain; charset=UTF-8\\n"\n\n'
        entry = 'msgctxt "%s"\nmsgid "%s"\nmsgstr "neu"\n\n'
        for entries, warning, text in (
                ((("A", "ONE"),), 'A: translated from "ONE"; en is "one"', "#> one\n# ONE\nKEY: A\nTEXT: neu\n"),
                ((("X", "x"),), '"X": no such key in en\n', "KEY: X\nTEXT: neu\n"),
                ((("17", "two"),), '"17": no such key in en, and several', "KEY: 17\nTEXT: neu\n"),
                ((("17", "one"),), "", "# one\nKEY: A\nTEXT: neu\n")):
            with self.subTest(entries):
                self.write("de.po", header + "".join(entry % pair for pair in entries))
                before = self.read("de.lang.txt")
                if warning:
                    self.assertIn(warning, self.run_both("import", "de.po", "--strict", "-o", "de.lang.txt", code=2)[1])
                    self.assertEqual(self.read("de.lang.txt"), before)
                shutil.copy(self.work / "de.lang.txt", self.work / "new.lang.txt")
                errors = self.run_both("import", "de.po", "-o", "new.lang.txt", code=int(bool(warning)))[1]
                self.assertIn(warning, errors)
                self.assertIn(text, self.read("new.lang.txt"))
        self.work.joinpath("new").mkdir()
        for arguments, code in ((["--strict"], 2), ([], 1)):
            errors = self.run_both("import", "de.po", "-o", "new/de.lang.txt", *arguments, code=code)[1]
            self.assertIn("nothing to compare with: no texts in the reference language", errors)
            self.assertEqual((self.work / "new/de.lang.txt").exists(), code == 1)
        self.write("de.po", header + entry % ("X", "x"))
        self.assertIn('"X": no such key in en', self.run_both("import", "de.po", "-o", "newer.lang.txt", code=1)[1])
        self.write("twice.po", header + entry % ("A", "one") + entry % ("17", "one"))
        self.assertIn("two texts", self.run_tool("import", "twice.po", "-o", "de.lang.txt", code=2))

    @unittest.skipUnless(shutil.which("po2xliff"), "no po2xliff")
    def test_xliff_made_from_po_is_matched_by_source(self):
        self.write("en.lang.txt", language("en", {"A": "one", "B": "two"}))
        self.write("de.lang.txt", language("de", {"A": "eins"}))
        self.run_tool("export", "--folder", ".", "--lang", "de", "-o", "de.po")
        subprocess.run(["po2xliff", "--progress=none", "de.po", "de.xlf"], cwd=self.work, check=True, capture_output=True)
        self.write("de.xlf", re.sub(r"(<source>two</source>\s*)<target></target>", r"\1<target>zwei</target>", self.read("de.xlf")))
        self.assertIn("2 taken", self.run_tool("import", "de.xlf", "-o", "de.lang.txt"))
        self.assertIn("# two\nKEY: B\nTEXT: zwei\n", self.read("de.lang.txt"))

    def test_whole_folders(self):
        self.work.joinpath("langs").mkdir()
        self.write("langs/00-en.lang.txt", language("en", {"A": "one"}))
        self.write("langs/german.lang.txt", "# Last-Translator: Jo <jo@host>\n" + language("de", {"A": "eins"}))
        self.write("langs/pt-PT.lang.txt", language("pt-PT", {"A": "um"}))
        self.write("langs/zh.lang.txt", language("zh-Hant", {"A": "yi"}))
        self.run_tool("export", "--all", "-o", "out")
        self.assertEqual(sorted(path.name for path in self.work.glob("out/*")), ["de.po", "pt-PT.po", "zh-Hant.po"])
        self.assertIn("exists already", self.run_tool("export", "--all", "-o", "out", code=2))
        self.assertIn("one template", self.run_tool("export", "--all", "--to", "pot", "-o", "pot", code=2))
        self.write("langs/x.lang.txt", language("../evil", {"A": "x"}))
        self.assertIn("no code of a language", self.run_tool("export", "--all", "-o", "out", "--force", code=2))
        self.assertFalse((self.work / "evil.po").exists())
        (self.work / "langs/x.lang.txt").unlink()
        self.assertIn("Language: pt_PT\\n", self.read("out/pt-PT.po"))
        self.assertIn("Language: zh_TW\\n", self.read("out/zh-Hant.po"))
        for name in ("de", "pt-PT", "zh-Hant"):
            self.write(f"out/{name}.po", re.sub('msgstr "(eins|um|yi)"', 'msgstr "neu"', self.read(f"out/{name}.po")))
        self.write("out/fr.po", self.read("out/de.po").replace("Language: de", "Language: fr").replace("Jo <", "Al <"))
        text = self.run_tool("import", "out")
        for name in ("german", "pt-PT", "fr", "zh"):
            self.assertIn(f"langs/{name}.lang.txt: 1 taken", text)
            self.assertIn("TEXT: neu\n", self.read(f"langs/{name}.lang.txt"))
        self.assertIn("# Last-Translator: Al <jo@host>\n", self.read("langs/fr.lang.txt"))
        self.write("out/more.po", self.read("out/de.po"))
        self.assertIn("a second file", self.run_tool("import", "out", code=2))
        pot = self.run_tool("export", "--to", "pot")
        self.assertIn('msgctxt "A"\nmsgid "one"\nmsgstr ""\n', pot)

    def test_notes_for_translators(self):
        self.write("en.lang.txt", language("en", ENGLISH))
        self.write("de.lang.txt", language("de", {"CXT_MENU_ABOUT": "&Info"}))
        os.environ["SOURCE_DATE_EPOCH"] = "86400"
        self.addCleanup(os.environ.pop, "SOURCE_DATE_EPOCH")
        po = self.run_tool("export", "--folder", ".", "--lang", "de")
        entry = next(part for part in po.split("\n\n") if 'msgctxt "CXT_MENU_OPTIONS"' in part)
        for line in ("#. Menu: drives, below CXT_MENU_PARENT; files", "#. Command offset: 9\n",
                     "#. Accelerators taken there: i (CXT_MENU_ABOUT)\n"):
            self.assertIn(line, entry)
        self.assertIn("PO-Revision-Date: 1970-01-02 00:00+0000\\n", po)
        xliff = self.run_tool("export", "--folder", ".", "--lang", "de", "--to", "xliff")
        self.assertIn('date="1970-01-02T00:00:00Z"', xliff)
        self.assertIn('<note from="developer">Command offset: 9</note>', xliff)
        os.environ["SOURCE_DATE_EPOCH"] = "1e3"
        self.assertIn("SOURCE_DATE_EPOCH", self.run_tool("export", "--folder", ".", "--lang", "de", code=2))

    def test_a_translators_round(self):
        """From an empty file to a changed English text; after each step all that was translated is still there."""
        self.work.joinpath("langs").mkdir()
        english = dict(ENGLISH)
        self.write("langs/00-en.lang.txt", language("en", english))
        target = "langs/eo.lang.txt"
        wanted = {key: "Esperanto" if key == "LANGUAGE" else "eo " + text for key, text in english.items()}
        done = {}

        def all_is_there(*warnings):
            texts = dict(re.findall(r"^KEY: (.*)\nTEXT: (.*)$", self.read(target), re.M))
            self.assertEqual(texts, done)
            found = json.loads(self.run_tool("check", "--json", code=int(bool(warnings))))
            self.assertEqual([(f["check"], f["key"]) for f in found["findings"]], list(warnings))
            self.assertEqual(next(row for row in found["coverage"] if row["language"] == "eo")["translated"], len(done))

        self.run_tool("new", "eo", "-o", target)
        all_is_there()
        po = self.run_tool("export", "--lang", "eo")
        for key in list(english)[:len(english) // 2]:
            done[key] = wanted[key]
            po = re.sub(f'(msgctxt "{key}"\nmsgid .*\nmsgstr )""', lambda match: f'# asked Zam\n{match[1]}"{done[key]}"', po)
        self.write("eo.po", po)
        self.assertIn(f"{len(done)} taken, 0 kept", self.run_tool("import", "eo.po", "-o", target))
        all_is_there()
        xliff = self.run_tool("export", "--lang", "eo", "--to", "xliff")
        for key in set(wanted) - set(done):
            done[key] = wanted[key]
            xliff = re.sub(f'(resname="{key}".*\n.*</source>)', lambda match: f"{match[1]}<target>{done[key].replace('&', '&amp;')}</target>",
                           xliff)
        self.write("eo.xlf", xliff)
        self.assertIn("22 taken, 0 kept", self.run_tool("import", "eo.xlf", "-o", target))
        all_is_there()
        self.assertEqual(self.read(target).count("# asked Zam\n"), len(english) // 2)

        english["CXT_MENU_HELP"] = "&Help topics"
        self.write("langs/00-en.lang.txt", language("en", english))
        changed = ("changed", "CXT_MENU_HELP")
        all_is_there(changed)
        for _ in range(2):
            self.run_tool("merge", "--in-place")
            all_is_there(changed)
            self.assertIn("#> &Help topics\n# &Help\nKEY: CXT_MENU_HELP\n", self.read(target))
        po = self.run_tool("export", "--lang", "eo")
        self.assertRegex(po, r'#, fuzzy\n#\| msgid "&Help"\nmsgctxt "CXT_MENU_HELP"\nmsgid "&Help topics"\nmsgstr "eo &Help"')
        self.write("eo.po", po)
        self.assertIn("21 taken, 1 kept, 1 fuzzy left out", self.run_tool("import", "eo.po", "-o", target))
        all_is_there(changed)
        done["CXT_MENU_HELP"] = "eo &Help neu"
        self.write("eo.po", po.replace("#, fuzzy\n", "").replace('"eo &Help"', '"eo &Help neu"'))
        self.run_tool("import", "eo.po", "-o", target)
        all_is_there()
        self.assertIn("# &Help topics\nKEY: CXT_MENU_HELP\n", self.read(target))

    def test_files_that_came_back_from_other_programs(self):
        self.write("en.lang.txt", language("en", {"A": "one", "B": "two"}))
        self.write("de.lang.txt", language("de", {"A": "eins", "B": "zwei"}))
        xliff = self.run_tool("export", "de.lang.txt", "--lang", "de", "--to", "xliff")
        self.write("de.xlf", xliff.replace(">eins<", '>\n <mrk mtype="seg">eins</mrk>\n<')
                   .replace('state="translated">zwei', 'state="needs-review-translation">zwei'))
        imported = self.run_tool("import", "de.xlf", "--folder", ".")
        self.assertIn("TEXT: eins\n", imported)
        self.assertNotIn("zwei", imported)
        po = self.run_tool("export", "de.lang.txt", "--lang", "de", "--to", "po")
        self.write("de.po", po.replace('msgctxt "B"', '#, fuzzy\n#~ msgctxt "OLD"\n#~ msgid "x"\n#~ msgstr "y"\n\nmsgctxt "B"'))
        self.assertIn("TEXT: zwei\n", self.run_tool("import", "de.po", "--folder", "."))


if __name__ == "__main__":
    unittest.main()
