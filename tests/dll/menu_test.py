"""The built DLL through real COM: the exact menu of each kind of selection, and what each entry starts."""
import base64
import functools
import os
import pathlib
import struct
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "examples"))
import receiver  # noqa: E402
from wine_session import APPROVED, BIN, FILES_CLASS, ROOT, SETTINGS, WineTest, windows_path

SEPARATOR = "--"
HOST = os.environ.get("NMSHELL_WEB_HOST", "https://www.nullmark.example")


def entry(text, offset, bitmap=None, grayed=False):
    return (text, offset, None if grayed else bitmap, grayed)


def submenu(text, bitmap, children, grayed=False):
    return (text, None, None if grayed else bitmap, grayed, children)


PRODUCT = submenu("&Nullmark", 236, [
    entry("&Options...", 9, 237), entry("&Start Nullmark", 7, 238), SEPARATOR,
    entry("Check for &updates...", 11), entry("&Register...", 12), entry("Up&grade...", 13), SEPARATOR,
    entry("&Help", 10, 239), entry("&About Nullmark", 14, 240)])


def tree(entries):
    """The client's entries in the form of the expectations above."""
    result = []
    for item in entries:
        if item["type"] == "separator":
            result.append(SEPARATOR)
            continue
        found = (item["text"], item.get("offset"), item["bitmap"], item["state"] == "grayed")
        result.append(found + (tree(item["entries"]),) if item["type"] == "submenu" else found)
    return result


def path_list(*paths):
    return "".join(path + "\0" for path in paths).encode("utf-16-le", "surrogatepass")


class MenuTest(WineTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        registered = cls.wine("nmshell-setup.exe", "register")
        assert registered.returncode == 0, registered.stdout + registered.stderr
        # Web pages go to the stand-in application too, which reports the address as its argument.
        for scheme in ("http", "https"):
            cls.reg("add", rf"HKLM\Software\Classes\{scheme}\shell\open\command", "/ve", "/d",
                    f'"{windows_path(BIN / "nmark.exe")}" "%1"', "/f")
        # A data drive beside the system drive.
        data = cls.home / "data"
        data.mkdir()
        os.symlink(data, cls.home / "prefix/dosdevices/d:")

    def setUp(self):
        super().setUp()
        settings = self.work / "settings.reg"
        key = SETTINGS.replace("HKCU", "HKEY_CURRENT_USER")
        settings.write_text(f'REGEDIT4\n\n[-{key}]\n\n[{key}]\n"Language"="en"\n', encoding="ascii")
        self.reg("import", windows_path(settings))
        self.file = self.make("Übersicht – Entwurf.txt")
        self.other = self.make("表計算 😀.ods")
        self.folder = windows_path(self.work)

    def setting(self, name, kind, value):
        self.reg("add", SETTINGS, "/v", name, "/t", kind, "/d", value, "/f")

    def make(self, name):
        path = self.work / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text("x", encoding="utf-8")
        return windows_path(path)

    def pick(self, offset, *selection):
        """What nmark.exe received, which the example receiver understands alike."""
        request = super().pick(offset, *selection)
        arguments = list(request["arguments"])
        if "-tfn" in arguments:  # that file is gone: its bytes as a new one
            file = self.work / "handover.nmark"
            file.write_bytes(bytes.fromhex(request["handover"]))
            arguments[arguments.index("-tfn") + 1] = str(file)
        parsed = receiver.parse(arguments)
        self.assertEqual(parsed["command"], request["command"])
        self.assertEqual(parsed["cursor"], request["cursor"] and [request["cursor"]["x"], request["cursor"]["y"]])
        self.assertEqual(parsed["data"].encode("utf-16-be", "surrogatepass").hex(), request["dataUnits"])
        return request

    def entries(self, *selection):
        result = self.rightclick(*selection)
        self.assertEqual(result["identifiers"], 15)
        return tree(result["entries"])

    def test_menu_of_files_and_folders(self):
        for selection, text in (([self.file], "&Wipe file"), ([self.folder], "&Wipe folder"),
                                ([self.file, self.other], "&Wipe selected items"),
                                ([self.file, self.folder], "&Wipe selected items"),
                                ([self.make(f"{'long-' * 11}/" * 6 + "x.txt")], "&Wipe file")):
            with self.subTest(text):
                self.assertEqual(self.entries(*selection), [SEPARATOR, entry(text, 0, 230), PRODUCT, SEPARATOR])

    @functools.cached_property
    def elevation(self):
        return self.pick(7, self.file)["elevation"]

    def trash(self, user, admin):
        elevation = self.elevation
        return [entry("&Current user", user, 234, grayed=elevation == 2),
                entry("&All users (as administrator)", admin, 235, grayed=elevation == 0)]

    def test_menu_of_drives(self):
        bins = "Wipe &Recycle Bin of this drive"
        for name, drives, full, wipe_grayed, text in (
                ("system drive", ["C:\\"], True, True, bins), ("several drives", ["C:\\", "D:\\"], True, True, bins),
                ("data drive", ["D:\\"], True, False, bins), ("empty bin", ["D:\\"], False, False, bins + " (empty)")):
            with self.subTest(name):
                self.fill_recycle_bin(full)
                self.assertEqual(self.entries("--drive", *drives), [
                    SEPARATOR, entry("&Wipe entire drive", 1, 231, wipe_grayed),
                    entry("&Clean drive (free space and traces)", 2, 232),
                    submenu(text, 233, self.trash(3, 5), grayed=not full or len(drives) > 1), PRODUCT, SEPARATOR])

    def test_menu_of_the_recycle_bin(self):
        for full in (True, False):
            self.fill_recycle_bin(full)
            self.assertEqual(self.entries("--bin"), [
                SEPARATOR, submenu("Wipe &Recycle Bins of all drives", 233, self.trash(4, 6), grayed=not full), PRODUCT,
                SEPARATOR])

    def test_each_entry_starts_the_application_with_its_command(self):
        files, drive, nothing = [self.file, self.other], ["--drive", "D:\\"], []
        rows = [(0, files, "101", path_list(*files)), (1, drive, "102", path_list("D:\\")),
                (2, drive, "104", path_list("D:\\")), (3, drive, "105", path_list("D:\\")),
                (4, ["--bin"], "105", b""), (5, drive, "105", path_list("D:\\")), (6, ["--bin"], "105", b""),
                (7, files, "", b""), (8, files, "106", b""), (9, files, "107", b""), (13, files, "108", b""),
                (14, files, "109", b"")]
        for offset, selection, command, data in rows:
            with self.subTest(offset=offset):
                request = self.pick(offset, *selection)
                expected = ["-cmd", command] if command else []
                cursor = request["cursor"]
                self.assertIsNotNone(cursor)
                expected += ["-cent", base64.b64encode(struct.pack("<ii", cursor["x"], cursor["y"])).decode()]
                if data:
                    expected += ["-data", base64.b64encode(data).decode()]
                self.assertEqual(request["arguments"], expected)
                self.assertTrue(request["commandLine"].endswith(" ".join(expected)))

    def test_pages(self):
        for offset, page in ((10, "/user_guide.html"), (11, "/updates/nmark_403.html"), (12, "/upgrade.html")):
            with self.subTest(page):
                self.assertEqual(self.pick(offset, self.file)["arguments"], [HOST + page])

    def test_a_long_selection_goes_through_a_file_that_the_application_deletes(self):
        temporary = self.home / "a temporary folder"
        temporary.mkdir(exist_ok=True)
        names = [self.make(f"{'long name ' * 8}{number} ü表😀.txt") for number in range(60)]
        for name in ("TMP", "TEMP"):
            self.reg("add", r"HKCU\Environment", "/v", name, "/d", windows_path(temporary), "/f")
        request = self.pick(0, *names)
        self.assertEqual(request["arguments"][-2], "-tfn")
        self.assertEqual(request["arguments"][-1],
                         windows_path(temporary / "tfn_db710640.nmark").replace(" ", "%20"))
        self.assertEqual(bytes.fromhex(request["dataUnits"]), path_list(*names).decode("utf-16-le").encode("utf-16-be"))
        self.assertEqual(request["paths"], names)
        self.assertEqual(list(temporary.iterdir()), [])

    def test_settings(self):
        with self.subTest("German"):
            self.setting("Language", "REG_SZ", "de")
            self.assertEqual(self.entries(self.file)[1], entry("Datei &sicher löschen", 0, 230))
        with self.subTest("a language without a file"):
            self.setting("Language", "REG_SZ", "nn")
            self.assertEqual(self.entries(self.file), [SEPARATOR, entry("&Wipe file", 0, 230), PRODUCT, SEPARATOR])
        with self.subTest("no icons"):
            self.setting("Icons", "REG_DWORD", "0")
            self.assertEqual(self.entries(self.file)[1][2], None)
        with self.subTest("wrong type"):
            self.setting("Icons", "REG_SZ", "0")
            self.assertEqual(self.entries(self.file)[1][2], 230)

    def test_language_files_that_another_process_holds_open_for_writing_are_read(self):
        held = BIN / "langs/de.lang.txt"
        before = held.read_bytes()
        command = f">>{windows_path(held)} set /p x="
        with subprocess.Popen([str(ROOT / "scripts/wine-run.sh"), "cmd", "/d", "/c", command], env=self.environment,
                              stdin=subprocess.PIPE) as holder:
            try:
                self.wait_until_open(held)
                self.setting("Language", "REG_SZ", "de")
                self.assertEqual(self.entries(self.file)[1], entry("Datei &sicher löschen", 0, 230))
                self.assertIsNone(holder.poll())
            finally:
                holder.communicate(b"\r\n", timeout=60)
        self.assertEqual(held.read_bytes(), before)

    def wait_until_open(self, path):
        def is_open(link):
            try:
                return os.readlink(link) == str(path.resolve())
            except OSError:
                return False
        deadline = time.monotonic() + 60
        while not any(map(is_open, pathlib.Path("/proc").glob("[0-9]*/fd/*"))):
            self.assertLess(time.monotonic(), deadline, path)
            time.sleep(0.05)

    def test_an_extension_that_is_off_is_told_with_the_reason(self):
        with self.subTest("switched off"):
            self.setting("Enabled", "REG_DWORD", "0")
            self.assertRefused("Enabled")
            self.setting("Enabled", "REG_SZ", "0")
            self.rightclick(self.file)
        with self.subTest("not approved"):
            self.reg("add", APPROVED, "/v", FILES_CLASS, "/d", "QuietOwl_NMark ", "/f")
            self.assertRefused("Approved")
            self.reg("add", APPROVED, "/v", FILES_CLASS, "/d", "QuietOwl_NMark", "/f")

    def assertRefused(self, reason, *options):
        finished = self.wine("rightclick.exe", *options, self.file)
        self.assertEqual(finished.returncode, 4, finished.stderr)
        self.assertIn(reason, finished.stderr)

    def test_commands_of_the_first_level_are_the_context_menus(self):
        """The same entries with the same texts, states and icons, and what they start, through the registered class."""
        self.assertRefused("not registered", "--modern")
        self.register_commands()
        self.setting("Language", "REG_SZ", "de")
        for selection, offsets in (([self.file], (0, 7, 9, 10, 11, 12, 13, 14)), ([self.folder], (0,)),
                                   ([self.file, self.folder], (0,))):
            _, wipe, product, _ = self.entries(*selection)
            root, = tree(self.rightclick("--modern", *selection)["entries"])
            self.assertEqual(root, (*product[:4], [wipe, *product[4]]))
            for offset in offsets:
                with self.subTest(offset=offset):
                    self.assertEqual(self.command_line(self.pick(offset, "--modern", *selection)),
                                     self.command_line(self.pick(offset, *selection)))
                    self.assertEqual(self.rightclick("--modern", "--help-text", offset, *selection)["helpText"],
                                     self.rightclick("--help-text", offset, *selection)["helpText"])
        self.setting("Enabled", "REG_DWORD", "0")
        root, = self.rightclick("--modern", self.file)["entries"]
        self.assertEqual((root["state"], root["entries"]), ("hidden", []))

    @staticmethod
    def command_line(request):
        """The cursor may have moved."""
        return request["commandLine"].replace(request["arguments"][request["arguments"].index("-cent") + 1], "CURSOR") \
            if "-cent" in request["arguments"] else request["commandLine"]

    def test_flags_and_help_texts(self):
        for flags, count in ((0, 15), (4, 15), (1, 0), (2, 0), (8, 0)):
            self.assertEqual(self.rightclick("--flags", flags, self.file)["identifiers"], count, flags)
        self.assertEqual(self.rightclick("--help-text", 8, self.file)["helpText"]["text"], "Wipe the swap file")
        self.assertEqual(self.rightclick("--help-text", 15, self.file, code=6)["helpText"]["result"], "0x80004005")


if __name__ == "__main__":
    unittest.main()
