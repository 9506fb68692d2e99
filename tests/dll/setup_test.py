"""nmshell-setup against a real registry: what registering adds, that nothing of it stays, and what status tells."""
import json
import shutil
import unittest

from wine_session import APPROVED, BIN, FILES_CLASS, SETTINGS, WineTest, windows_path

CLASSES = (FILES_CLASS, "{C84E10B6-2F7A-4D93-8E15-6A0B3FD7C921}", "{7A21E6D3-B94C-4E5F-9D08-13C6A8F4B2E7}")
NAME = "QuietOwl_NMark"


class SetupTest(WineTest):
    def expected(self):
        module = windows_path(BIN / "nmshell.dll").replace("\\", "\\\\")
        machine = "hkey_local_machine\\software\\"
        values = {(machine + "microsoft\\windows\\currentversion\\shell extensions\\approved", f'"{clsid}"="{NAME}"')
                  for clsid in CLASSES}
        classes = machine + "classes\\"
        for place, clsid in zip(("allfilesystemobjects", "drive", "clsid\\{645ff040-5081-101b-9f08-00aa002f954e}"),
                                CLASSES):
            values.add((f"{classes}{place}\\shellex\\contextmenuhandlers\\{NAME.lower()}", f'@="{clsid}"'))
        for clsid in CLASSES:
            server = f"{classes}clsid\\{clsid.lower()}\\inprocserver32"
            values |= {(server, f'@="{module}"'), (server, '"ThreadingModel"="Apartment"')}
        return values

    def test_register_and_unregister(self):
        # Keys that every Windows has and a fresh prefix has not.
        for key in (r"AllFileSystemObjects", r"Drive", r"CLSID\{645FF040-5081-101B-9F08-00AA002F954E}"):
            self.reg("add", rf"HKLM\Software\Classes\{key}\ShellEx\ContextMenuHandlers", "/f")
        self.reg("add", APPROVED, "/f")
        before = self.registry()
        self.assertEqual(self.wine("nmshell-setup.exe", "unregister").returncode, 0)
        self.assertEqual(self.registry() ^ before, set(), "unregistering on a clean machine changes nothing")
        self.assertEqual(self.wine("nmshell-setup.exe", "status").returncode, 1)

        done = self.wine("nmshell-setup.exe", "register")
        self.assertEqual(done.returncode, 0, done.stderr)
        added = self.registry() - before
        self.assertEqual({row for row in added if row[1]}, self.expected())
        status = self.wine("nmshell-setup.exe", "status")
        self.assertEqual((status.returncode, status.stdout.count("present")), (0, 12), status.stdout)

        self.assertEqual(self.wine("nmshell-setup.exe", "unregister").returncode, 0)
        self.assertEqual(self.registry() ^ before, set())

    def install(self):
        """A copy of the extension in the work folder; gives its setup program."""
        shutil.copytree(BIN / "langs", self.work / "langs")
        for name in ("nmshell.dll", "nmshell-setup.exe"):
            shutil.copy(BIN / name, self.work)
        return self.work / "nmshell-setup.exe"

    def test_register_refuses_what_cannot_be_loaded(self):
        program = shutil.copy(BIN / "nmshell-setup.exe", self.work)
        before = self.registry()
        log = self.work / "log.txt"
        for content, code, reason in ((None, 4, "there is no"), (b"no DLL", 6, "it is no 64-bit DLL")):
            if content:
                (self.work / "nmshell.dll").write_bytes(content)
            finished = self.wine(program, "--log", windows_path(log), "register")
            self.assertEqual(finished.returncode, code)
            for text in (finished.stderr, log.read_text(encoding="utf-8").splitlines()[-1]):
                self.assertIn(reason, text)
        self.assertEqual(self.registry() ^ before, set())
        usage = self.wine("nmshell-setup.exe", "registre")
        self.assertEqual((usage.returncode, "(did you mean register?)" in usage.stderr), (2, True), usage.stderr)
        self.assertRegex(self.wine("nmshell-setup.exe", "--version").stdout, r"^nmshell-setup \d+\.\d+\.\d+\n$")
        log.unlink()
        status = self.wine("nmshell-setup.exe", "--log", windows_path(log), "status")
        self.assertEqual((status.returncode, status.stdout), (1, log.read_text(encoding="utf-8")))
        self.assertEqual(self.wine("nmshell-setup.exe", "--log", "Z:\\dev\\full", "status").returncode, 5)
        self.assertEqual(self.wine("nmshell-setup.exe", "register", "--log", "Z:\\no\\log").returncode, 5)

    def test_status_tells_whether_and_how_the_menu_appears(self):
        program = self.install()
        self.assertEqual(self.wine(program, "register").returncode, 0)
        self.addCleanup(self.wine, program, "unregister")

        def status():
            finished = self.wine(program, "status", "--json")
            answer = json.loads(finished.stdout)
            self.assertEqual(finished.returncode, 0 if answer["menuAppears"] else 1)
            return answer

        good = status()
        self.assertEqual((good["verdict"], good["languages"]["count"]),
                         ("The menu appears, in English (en).", len(list((self.work / "langs").iterdir()))))
        self.assertRegex(good["module"]["version"], r"^\d+\.\d+\.\d+\.0$")

        for value, verdict in (("de", "The menu appears, in Deutsch (de)."), ("xx", "The menu appears, in English (en).")):
            self.reg("add", SETTINGS, "/v", "Language", "/d", value, "/f")
            self.assertEqual(status()["verdict"], verdict)
        self.assertFalse(status()["languages"]["settingKnown"])

        faulty = self.work / "langs/zz.lang.txt"
        faulty.write_text("LANG: zz\n\nTXT: x\n", encoding="utf-8")
        reason = f"There is a syntax error at line 3 in the following file. {windows_path(faulty)}"
        self.assertIn(reason, status()["verdict"])
        client = self.wine("rightclick.exe", windows_path(self.work / "nmshell.dll"))
        self.assertEqual(client.returncode, 4)
        self.assertIn(reason, client.stderr)
        faulty.unlink()

        self.reg("add", SETTINGS, "/v", "Enabled", "/t", "REG_DWORD", "/d", "0", "/f")
        self.assertIn("Enabled", status()["verdict"])
        self.assertIn("setting    Enabled = off\n", self.wine(program, "status").stdout)

    def test_warns_of_a_folder_that_users_can_write_to(self):
        program = self.install()
        self.addCleanup(self.wine, program, "unregister")
        for mode, warned in ((0o755, False), (0o777, True)):
            self.work.chmod(mode)
            finished = self.wine(program, "register")
            self.assertEqual(finished.returncode, 0, finished.stderr)
            warning = f"can change {windows_path(self.work)}, which the shell of every user will load"
            self.assertEqual(warning in finished.stderr, warned, finished.stderr)
            warnings = json.loads(self.wine(program, "status", "--json").stdout)["folderWarnings"]
            self.assertEqual(any(text.endswith(f"can change {windows_path(self.work)}") for text in warnings), warned)


if __name__ == "__main__":
    unittest.main()
