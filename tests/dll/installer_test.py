"""The installer under Wine's msiexec: what it puts on a machine, hands on to its successor, and takes away again."""
import re
import shutil
import subprocess
import unittest
import xml.etree.ElementTree as xml

from wine_session import BIN, ROOT, SETTINGS, WineTest, windows_path

DEFAULTS = r"HKLM\Software\NMark Shell\Defaults"
FIRST_LOGON = r"HKLM\SOFTWARE\Microsoft\Active Setup\Installed Components\{5E0C1F6B-7A43-4A7B-9B55-3C6D2A8F1E90}"
MICROSOFT = r"HKLM\Software\Microsoft\Windows\CurrentVersion"
# Empty keys that may stay: the system's, and what Wine's installer keeps of components.
LEFT = re.compile(r"hkey_local_machine\\software\\(microsoft\\(active setup(\\installed components)?|"
                  r"windows\\currentversion\\(installer(\\.*)?|uninstall|shell extensions(\\approved)?))|"
                  r"classes\\(installer(\\.*)?|(allfilesystemobjects|drive|clsid\\\{645ff040-5081-101b-9f08-00aa002f954e\})"
                  r"(\\shellex(\\contextmenuhandlers)?)?))")


class InstallerTest(WineTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        for name, version in (("old", "4.0.3"), ("new", "4.0.4")):
            subprocess.run([ROOT / "scripts/build-msi.sh", "-b", BIN, "-v", version, cls.home / f"{name}.msi"], check=True,
                           stdout=subprocess.DEVNULL)
        # A package that fails right after it has registered.
        broken = shutil.copy(cls.home / "old.msi", cls.home / "broken.msi")
        subprocess.run(["msibuild", broken,
                        "-q", "INSERT INTO CustomAction (Action, Type, Source, Target) VALUES ('Fail', 3090, 'Setup', 'x')",
                        "-q", "INSERT INTO InstallExecuteSequence (Action, Sequence) VALUES ('Fail', 5102)"], check=True)
        cls.drive = cls.home / "prefix/drive_c"
        (cls.drive / "windows/Installer").mkdir()  # the system's own

    @classmethod
    def restart(cls):
        cls.stop()
        cls.start()
        cls.wine("wineboot")

    def msiexec(self, verb, package, *properties):
        return self.wine("msiexec", verb, windows_path(self.home / f"{package}.msi"), "/qn", *properties).returncode

    def files(self, folder):
        return {str(path.relative_to(folder)) for path in folder.rglob("*")}

    def value(self, key, name):
        found = re.search(r"REG_\w+ +(.*)", self.wine("reg", "query", key, "/v", name).stdout)
        return found.group(1).strip() if found else None

    def products(self):
        listing = self.wine("reg", "query", MICROSOFT + r"\Uninstall", "/s").stdout
        return re.findall(r"DisplayVersion +REG_SZ +(\S+)", listing)

    def logOn(self):
        """A logon. Windows runs the command from where it stands; for Wine it is moved to RunOnce."""
        self.reg("add", MICROSOFT + r"\RunOnce", "/v", "logon", "/d", self.value(FIRST_LOGON, "StubPath"), "/f")
        self.restart()
        self.assertIsNone(self.value(MICROSOFT + r"\RunOnce", "logon"))

    def assertAsBefore(self, registry, files):
        changed = self.registry() ^ registry
        self.assertEqual({row for row in changed if row[1] or not LEFT.fullmatch(row[0])}, set())
        self.assertEqual(self.files(self.drive) ^ files, set())

    def assertServes(self, folder, text, bitmap):
        """Registered from `folder`, with this entry for a file, and starting the application beside it."""
        status = self.wine(rf"C:\{folder}\nmshell-setup.exe", "status")
        self.assertEqual(status.returncode, 0, status.stdout)
        first = self.rightclick(windows_path(BIN / "nmshell.dll"))["entries"][1]
        self.assertEqual((first["text"], first["bitmap"]), (text, bitmap))
        self.assertEqual(self.pick(14, windows_path(BIN / "nmshell.dll"))["arguments"][:2], ["-cmd", "109"])

    def test_install_upgrade_uninstall(self):
        folder = self.drive / "Program Files/Nullmark"
        folder.mkdir()
        shutil.copy(BIN / "nmark.exe", folder)  # the application, which another installer brought
        registry, files = self.registry(), self.files(self.drive)

        self.assertEqual(self.msiexec("/i", "old", "NMARK_ICONS=0", "NMARK_LANGUAGE=de"), 0)
        languages = {f"langs/{path.name}" for path in (BIN / "langs").iterdir()}
        self.assertEqual(self.files(folder), {"nmark.exe", "nmshell.dll", "nmshell-setup.exe", "langs"} | languages)
        self.assertIsNone(self.value(SETTINGS, "Language"))
        self.logOn()
        self.assertServes(r"Program Files\Nullmark", "Datei &sicher löschen", None)

        self.reg("add", SETTINGS, "/v", "Icons", "/t", "REG_DWORD", "/d", "1", "/f")
        self.assertEqual(self.msiexec("/i", "new", "NMARK_ENABLED=1"), 0)
        self.assertEqual(self.products(), ["4.0.4"])
        self.assertEqual([self.value(rf"{DEFAULTS}\{name}", name) for name in ("Enabled", "Icons", "Language")],
                         ["0x1", "0x0", "de"])
        self.assertEqual(self.value(FIRST_LOGON, "Version"), "4,0,4")
        self.logOn()
        self.assertServes(r"Program Files\Nullmark", "Datei &sicher löschen", 230)  # the user's own choice of icons

        self.assertNotEqual(self.msiexec("/i", "old"), 0)
        self.assertEqual(self.products(), ["4.0.4"])
        self.assertEqual(self.msiexec("/x", "new"), 0)
        self.assertAsBefore(registry, files)

    def test_another_folder_stays_through_an_upgrade(self):
        registry, files = self.registry(), self.files(self.drive)
        self.assertEqual(self.msiexec("/i", "old", r"INSTALLDIR=C:\Elsewhere"), 0)
        self.assertEqual(self.msiexec("/i", "new"), 0)
        self.assertTrue((self.drive / "Elsewhere/nmshell.dll").exists())
        self.assertEqual(self.wine(r"C:\Elsewhere\nmshell-setup.exe", "status").returncode, 0)
        self.assertEqual(self.msiexec("/x", "new"), 0)
        self.assertAsBefore(registry, files)

    def test_a_failure_leaves_nothing(self):
        registry, files = self.registry(), self.files(self.drive)
        for package, *properties in (("broken", "NMARK_ICONS=0"), ("new", "NMARK_ICONS=2"), ("new", "NMARK_ENABLED=no")):
            with self.subTest(package=package, properties=properties):
                self.assertNotEqual(self.msiexec("/i", package, *properties), 0)
                self.assertAsBefore(registry, files)


class PolicyTest(unittest.TestCase):
    def test_every_reference_resolves(self):
        space = {"": "http://schemas.microsoft.com/GroupPolicy/2006/07/PolicyDefinitions"}
        folder = ROOT / "installer/admx"
        definitions = xml.parse(folder / "nmshell.admx").getroot()
        text = xml.tostring(definitions, "unicode")
        policies = definitions.findall("policies/policy", space)
        self.assertEqual({policy.get("key") for policy in policies}, {SETTINGS.removeprefix("HKCU\\")})
        self.assertEqual({item.get("valueName") for item in definitions.iter() if item.get("valueName")},
                         {"Enabled", "Icons", "Language"})
        elements = {policy.get("presentation"): {item.get("id") for item in policy.findall("elements/*", space)}
                    for policy in policies if policy.get("presentation")}
        for language in ("en-US", "de-DE"):
            with self.subTest(language):
                resources = xml.parse(folder / language / "nmshell.adml").getroot()
                strings = [item.get("id") for item in resources.findall(".//string", space)]
                self.assertEqual(sorted(set(re.findall(r"\$\(string\.(\w+)\)", text))), sorted(strings))
                self.assertEqual({f"$(presentation.{item.get('id')})": {control.get("refId") for control in item}
                                  for item in resources.findall(".//presentation", space)}, elements)


if __name__ == "__main__":
    unittest.main()
