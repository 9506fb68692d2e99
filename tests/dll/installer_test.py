"""The installer under Wine's msiexec: what it puts on a machine, hands on to its successor, and takes away again."""
import filecmp
import os
import pathlib
import re
import shutil
import struct
import subprocess
import tempfile
import unittest
import zipfile
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


def build(output, *options, **environment):
    subprocess.run([ROOT / "scripts/build-msi.sh", *options, output], check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, **environment})
    return output


def setUpModule():
    global PACKAGES  # what several tests look at is made once
    PACKAGES = pathlib.Path(tempfile.mkdtemp(prefix="nmshell-packages-"))
    unittest.addModuleCleanup(shutil.rmtree, PACKAGES)
    build(PACKAGES / "old.msi", "-b", BIN, "-v", "4.0.3")
    build(PACKAGES / "new.msi", "-b", BIN, "-v", "4.0.4")


def table(package, name):
    """The rows of a package's table, by their first column."""
    text = subprocess.run(["msiinfo", "export", package, name], capture_output=True, check=True).stdout.decode()
    return {row.split("\t")[0]: row.split("\t")[1:] for row in text.split("\r\n")[3:] if row}


class InstallerTest(WineTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        for name in ("old.msi", "new.msi"):
            shutil.copy(PACKAGES / name, cls.home)
        # A package that fails right after it has registered.
        broken = shutil.copy(cls.home / "old.msi", cls.home / "broken.msi")
        subprocess.run(["msibuild", broken,
                        "-q", "INSERT INTO CustomAction (Action, Type, Source, Target) VALUES ('Fail', 3090, 'Setup', 'x')",
                        "-q", "INSERT INTO InstallExecuteSequence (Action, Sequence) VALUES ('Fail', 5103)"], check=True)
        # One whose DLL is made for another processor.
        foreign = cls.home / "foreign"
        shutil.copytree(BIN, foreign, ignore=shutil.ignore_patterns("symbols"))
        dll = bytearray((BIN / "nmshell.dll").read_bytes())
        struct.pack_into("<H", dll, struct.unpack_from("<I", dll, 0x3C)[0] + 4, 0xAA64)
        (foreign / "nmshell.dll").write_bytes(dll)
        build(cls.home / "foreign.msi", "-b", foreign)
        cls.drive = cls.home / "prefix/drive_c"
        (cls.drive / "windows/Installer").mkdir()  # the system's own

    @classmethod
    def restart(cls):
        cls.stop()
        cls.wine("wineboot")

    def msiexec(self, verb, package, *properties):
        """The exit code; what went on stands in `log`."""
        file = self.work / "install.log"
        code = self.wine("msiexec", verb, windows_path(self.home / f"{package}.msi"), "/qn", "/l*v", windows_path(file),
                         *properties).returncode
        self.log = file.read_bytes().decode("utf-16" if file.read_bytes()[:2] == b"\xff\xfe" else "latin-1")
        return code

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
        command = self.value(FIRST_LOGON, "StubPath")
        self.assertEqual(command, r'"C:\Program Files\Nullmark\nmshell-setupw.exe" apply-defaults')
        self.reg("add", MICROSOFT + r"\RunOnce", "/v", "logon", "/d", command, "/f")
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

        self.assertEqual(self.msiexec("/i", "old", "NMARK_ICONS=0", "NMARK_LANGUAGE=de"), 0, self.log[-900:])
        languages = {f"langs/{path.name}" for path in (BIN / "langs").iterdir()}
        self.assertEqual(self.files(folder),
                         {"nmark.exe", "nmshell.dll", "nmcommand.dll", "nmcommand.msix", "nmshell-setup.exe",
                          "nmshell-setupw.exe", "langs"}
                         | languages)
        self.assertIn(r"Registered C:\Program Files\Nullmark\nmshell.dll", self.log)
        self.assertEqual(self.value(r"HKLM\Software\NMark Shell", "Version"), "4.0.3")
        entry = self.wine("reg", "query", MICROSOFT + r"\Uninstall", "/s").stdout
        self.assertRegex(entry, r"HelpLink +REG_\w+ +http")
        self.assertRegex(entry, r"InstallLocation +REG_\w+ +C:\\Program Files\\Nullmark\\")
        self.assertIsNone(self.value(SETTINGS, "Language"))
        self.logOn()
        self.assertServes(r"Program Files\Nullmark", "Datei &sicher löschen", None)

        self.reg("add", SETTINGS, "/v", "Icons", "/t", "REG_DWORD", "/d", "1", "/f")
        self.assertEqual(self.msiexec("/i", "new", "NMARK_ENABLED=1"), 0, self.log[-900:])
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
        self.assertEqual(self.msiexec("/i", "old", r"INSTALLDIR=C:\Elsewhere"), 0, self.log[-900:])
        self.assertEqual(self.msiexec("/i", "new"), 0, self.log[-900:])
        self.assertTrue((self.drive / "Elsewhere/nmshell.dll").exists())
        self.assertEqual(self.wine(r"C:\Elsewhere\nmshell-setup.exe", "status").returncode, 0)
        self.assertEqual(self.msiexec("/x", "new"), 0)
        self.assertAsBefore(registry, files)

    def test_a_failure_tells_its_reason_and_leaves_nothing(self):
        (self.drive / "Open").mkdir()
        (self.drive / "Open/old.txt").touch()  # Wine would take an empty folder away
        (self.drive / "Open").chmod(0o777)
        registry, files = self.registry(), self.files(self.drive)
        for reason, package, *properties in (
                ("", "broken", "NMARK_ICONS=0"),
                (r"nmshell.dll cannot be loaded: it is no 64-bit DLL for this processor", "foreign"),
                (r"Everyone can change C:\Open", "new", r"INSTALLDIR=C:\Open")):
            with self.subTest(package=package, properties=properties):
                self.assertNotEqual(self.msiexec("/i", package, *properties), 0)
                self.assertIn(reason, "\n".join(line for line in self.log.splitlines() if line.startswith("nmshell: ")))
                self.assertAsBefore(registry, files)

    def test_what_cannot_be_installed_is_refused_at_once(self):
        files = self.files(self.drive)
        refused = r"LaunchConditions\. Return value 0"  # Wine's log does not tell the reason
        for name, *values in (("NMARK_ICONS", "2"), ("NMARK_ENABLED", "no"),
                              ("NMARK_LANGUAGE", "xx", "DE", "d", "de;el", ";", "zh-")):
            for value in values:
                with self.subTest(f"{name}={value}"):
                    self.assertNotEqual(self.msiexec("/i", "new", f"{name}={value}"), 0)
                    self.assertRegex(self.log, refused)
        environment = r"HKLM\SYSTEM\CurrentControlSet\Control\Session Manager\Environment"
        self.reg("add", environment, "/v", "PROCESSOR_ARCHITECTURE", "/d", "ARM64", "/f")
        self.assertNotEqual(self.msiexec("/i", "new"), 0)
        self.assertRegex(self.log, refused)
        self.reg("add", environment, "/v", "PROCESSOR_ARCHITECTURE", "/d", "AMD64", "/f")
        self.assertEqual(self.files(self.drive) ^ files, set())
        self.assertEqual(self.products(), [])


class PackageTest(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="nmshell-package-"))
        self.addCleanup(shutil.rmtree, self.work)

    def test_follows_from_version_and_content(self):
        again = build(self.work / "again.msi", "-b", BIN, "-v", "4.0.3", TZ="Asia/Tokyo")
        self.assertTrue(filecmp.cmp(again, PACKAGES / "old.msi", shallow=False), "the same files, the same package")
        changed = self.work / "bin"
        shutil.copytree(BIN, changed, ignore=shutil.ignore_patterns("symbols"))
        with open(changed / "langs/de.lang.txt", "a", encoding="utf-8") as file:
            file.write("# changed\n")
        other = build(self.work / "other.msi", "-b", changed, "-v", "4.0.3")
        codes = {table(package, "Property")["ProductCode"][0] for package in (again, other, PACKAGES / "new.msi")}
        self.assertEqual(len(codes), 3)
        later = build(self.work / "later.msi", "-b", BIN, "-v", "4.0.3", SOURCE_DATE_EPOCH="1900000000")
        self.assertEqual(table(later, "Property")["ProductCode"], table(again, "Property")["ProductCode"])
        for version in ("4.0", "4.0.65536", "256.0.0", "04.0.0", "4.0.0.1", "x"):
            finished = subprocess.run([ROOT / "scripts/build-msi.sh", "-b", BIN, "-v", version, self.work / "x.msi"],
                                      capture_output=True, check=False)
            self.assertEqual(finished.returncode, 2, version)

    def test_says_of_its_files_what_they_say(self):
        package = PACKAGES / "old.msi"
        versions = {name: row[3] for name, row in table(package, "File").items()}
        programs = {"Module", "Commands", "Setup", "SetupWithoutWindow"}
        self.assertEqual({name for name, version in versions.items() if version}, programs)
        self.assertRegex(versions["Module"], r"^\d+\.\d+\.\d+\.0$")
        self.assertEqual(set(table(package, "MsiFileHash")), set(versions) - programs)
        properties = table(package, "Property")
        self.assertIn(properties["ARPPRODUCTICON"][0], table(package, "Icon"))
        self.assertEqual(properties["SecureCustomProperties"][0].split(";"),
                         ["OLDERFOUND", "NEWERFOUND", "INSTALLDIR", "NMARK_ENABLED", "NMARK_ICONS", "NMARK_LANGUAGE"])
        self.assertFalse({"AppSearch", "LaunchConditions", "KeepFolder"} & set(table(package, "InstallUISequence")))
        # As the system it runs nothing but functions in a DLL of its own: the lowest six bits are the kind of action.
        kinds = {int(row[0]) & 0x3F for row in table(package, "CustomAction").values() if int(row[0]) & 0x400}
        self.assertEqual(kinds, {1})
        # 2 is a program without a console.
        program = (BIN / "nmshell-setupw.exe").read_bytes()
        self.assertEqual(struct.unpack_from("<H", program, struct.unpack_from("<I", program, 0x3C)[0] + 92)[0], 2)

    def test_is_signed_from_the_inside_out(self):
        def run(*command):
            return subprocess.run(command, cwd=self.work, capture_output=True, text=True, check=True).stdout

        run("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "key.pem", "-out", "cert.pem", "-days", "2",
            "-subj", "/CN=throwaway", "-addext", "extendedKeyUsage=codeSigning")
        sign = self.work / "sign.sh"
        sign.write_text(f"""#!/bin/sh -e
            echo "${{1##*/}}" >>{self.work}/signed
            case $1 in *.msix) exit ;; esac  # of which the installed osslsigncode may know nothing
            osslsigncode sign -certs {self.work}/cert.pem -key {self.work}/key.pem -h sha256 -in "$1" -out "$1.signed" >/dev/null
            mv "$1.signed" "$1"
            """, encoding="utf-8")
        sign.chmod(0o755)
        package = build(self.work / "signed.msi", "-b", BIN, "--sign", str(sign), "--publisher", "CN=throwaway")
        order = (self.work / "signed").read_text(encoding="utf-8").split()
        self.assertEqual(order, ["nmshell.dll", "nmcommand.dll", "nmshell-actions.dll", "nmshell-setup.exe", "nmshell-setupw.exe",
                                 "nmcommand.msix", "nmshell.msi"])
        run("msiextract", "-C", "out", package)
        with zipfile.ZipFile(next((self.work / "out").rglob("nmcommand.msix"))) as archive:
            self.assertIn(b'Publisher="CN=throwaway"', archive.read("AppxManifest.xml"))
        actions = run("msiinfo", "streams", package)
        self.assertIn("Binary.Actions", actions)
        with open(self.work / "actions.dll", "wb") as file:
            subprocess.run(["msiinfo", "extract", package, "Binary.Actions"], stdout=file, check=True)
        files = [package, self.work / "actions.dll", *(self.work / "out").rglob("*.dll"), *(self.work / "out").rglob("*.exe")]
        self.assertEqual(len(files), 6)
        for file in files:
            self.assertIn("Signature verification: ok", run("osslsigncode", "verify", "-CAfile", "cert.pem", "-in", file))
        self.assertNotEqual(subprocess.run([ROOT / "scripts/build-msi.sh", "-b", BIN, "--sign", "false", self.work / "x.msi"],
                                           capture_output=True, check=False).returncode, 0)
        self.assertFalse((self.work / "x.msi").exists())


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
