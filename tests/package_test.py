"""The package of Windows 11's menu: what scripts/build-package.sh makes, against the format's rules and against the sources."""
import base64
import hashlib
import os
import pathlib
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ET
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
MICROSOFT = "{http://schemas.microsoft.com/appx/"
FOUNDATION = MICROSOFT + "manifest/foundation/windows10}"
UAP = MICROSOFT + "manifest/uap/windows10}"
RESTRICTED = MICROSOFT + "manifest/foundation/windows10/restrictedcapabilities}"
UAP10 = MICROSOFT + "manifest/uap/windows10/10}"
COM = MICROSOFT + "manifest/com/windows10}"
DESKTOP4 = MICROSOFT + "manifest/desktop/windows10/4}"
DESKTOP5 = MICROSOFT + "manifest/desktop/windows10/5}"
BLOCK_MAP = MICROSOFT + "2010/blockmap}"


def build(output, *options, code=0, **environment):
    finished = subprocess.run([ROOT / "scripts/build-package.sh", *options, output], capture_output=True, text=True, check=False,
                              env={**os.environ, **environment})
    assert finished.returncode == code, finished.stderr
    return finished.stderr


def source(name, pattern):
    return re.search(pattern, (ROOT / name).read_text(encoding="utf-8"))[1]


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="nmshell-package-")
        cls.addClassCleanup(folder.cleanup)
        cls.work = pathlib.Path(folder.name)
        cls.file = cls.work / "one.msix"
        build(cls.file)
        with zipfile.ZipFile(cls.file) as archive:
            cls.files = {name: archive.read(name) for name in archive.namelist()}
        cls.manifest = ET.fromstring(cls.files["AppxManifest.xml"])

    def test_block_map_gives_every_file_and_block(self):
        self.check_block_map(self.file)
        logos, large = self.work / "logos", self.work / "large.msix"
        logos.mkdir()
        for name, size in (("empty", 0), ("full", 65536), ("large", 2 * 65536 + 1)):
            (logos / f"{name}.png").write_bytes(bytes(number % 251 for number in range(size)))
        subprocess.run([ROOT / "installer/package/make_package.py", "--version", "1.0.0.0", "--publisher", "CN=x", "--class-id", "x",
                        "--logos", logos, large], check=True)
        self.check_block_map(large)

    def check_block_map(self, package):
        with zipfile.ZipFile(package) as archive:
            entries = archive.infolist()
            files = {entry.filename: archive.read(entry) for entry in entries}
        blocks = ET.fromstring(files["AppxBlockMap.xml"])
        self.assertEqual(blocks.get("HashMethod"), "http://www.w3.org/2001/04/xmlenc#sha256")
        listed = {element.get("Name").replace("\\", "/"): element for element in blocks.iter(BLOCK_MAP + "File")}
        self.assertEqual(set(listed), set(files) - {"AppxBlockMap.xml", "[Content_Types].xml"})
        raw = package.read_bytes()
        for entry in entries:
            if entry.filename not in listed:
                continue
            with self.subTest(entry.filename):
                data, element = files[entry.filename], listed[entry.filename]
                self.assertEqual(int(element.get("Size")), len(data))
                name, extra = struct.unpack_from("<HH", raw, entry.header_offset + 26)
                self.assertEqual(int(element.get("LfhSize")), 30 + name + extra)
                self.assertEqual(entry.compress_type, zipfile.ZIP_STORED)  # else a block needs its packed size
                hashes = [base64.b64encode(hashlib.sha256(data[at:at + 65536]).digest()).decode() for at in range(0, len(data), 65536)]
                self.assertEqual([block.get("Hash") for block in element], hashes)

    def test_every_file_has_a_content_type(self):
        types = ET.fromstring(self.files["[Content_Types].xml"])
        endings = {element.get("Extension") for element in types if element.tag.endswith("Default")}
        self.assertEqual({name.rsplit(".", 1)[1] for name in self.files} - endings, set())
        parts = {element.get("PartName"): element.get("ContentType") for element in types if element.tag.endswith("Override")}
        self.assertEqual(parts, {"/AppxBlockMap.xml": "application/vnd.ms-appx.blockmap+xml"})

    def test_manifest_follows_the_sources(self):
        identity = self.manifest.find(FOUNDATION + "Identity")
        self.assertEqual(identity.get("Version"), source("CMakeLists.txt", r"project\(nmshell VERSION ([0-9.]+)") + ".0")
        self.assertEqual(identity.get("Publisher"), "CN=QuietOwl")
        wanted = source("comserver/identifiers.h", r'kCommandClassId = u"\{([0-9A-F-]+)\}"')
        served = self.manifest.find(f".//{COM}SurrogateServer/{COM}Class")
        self.assertEqual((served.get("Id"), served.get("Path")), (wanted, "nmcommand.dll"))
        verbs = {kind.get("Type"): kind.find(DESKTOP5 + "Verb").get("Clsid") for kind in self.manifest.iter(DESKTOP5 + "ItemType")}
        self.assertEqual(verbs, {"*": wanted, "Directory": wanted})
        installed = set(re.findall(r'Source="([^"]+)"', (ROOT / "installer/nmshell.wxs").read_text(encoding="utf-8")))
        program = self.manifest.find(f"{FOUNDATION}Applications/{FOUNDATION}Application").get("Executable")
        self.assertEqual({program, served.get("Path")} - installed, set())

    def test_manifest_has_the_form_that_windows_documents(self):
        self.assertEqual([element.tag for element in self.manifest], [FOUNDATION + name for name in (
            "Identity", "Properties", "Resources", "Dependencies", "Capabilities", "Applications")])
        self.assertEqual(self.manifest.find(f"{FOUNDATION}Properties/{UAP10}AllowExternalContent").text, "true")
        program = self.manifest.find(f"{FOUNDATION}Applications/{FOUNDATION}Application")
        # A program outside of the package, with the rights of whoever clicks; its class is made in apartments of one thread.
        self.assertEqual((program.get(UAP10 + "TrustLevel"), program.get(UAP10 + "RuntimeBehavior")), ("mediumIL", "win32App"))
        self.assertEqual(self.manifest.find(f".//{COM}Class").get("ThreadingModel"), "STA")
        self.assertEqual([element.get("Name") for element in self.manifest.iter(RESTRICTED + "Capability")],
                         ["runFullTrust", "unvirtualizedResources"])
        kinds = [element.get("Category") for element in self.manifest.find(f".//{FOUNDATION}Extensions")]
        self.assertEqual(kinds, ["windows.fileExplorerContextMenus", "windows.comServer"])
        for element, attribute, form in (
                ("Identity", "Name", r"[A-Za-z0-9.-]{3,50}"), ("Identity", "ProcessorArchitecture", "x64"),
                ("TargetDeviceFamily", "MinVersion", r"10\.0\.22000\.0"), ("Application", "Id", r"[A-Za-z][A-Za-z0-9]{0,63}")):
            self.assertRegex(self.manifest.find(f".//{FOUNDATION}{element}").get(attribute), f"^{form}$")
        for verb in self.manifest.iter(DESKTOP5 + "Verb"):
            self.assertRegex(verb.get("Id"), "^[A-Za-z][A-Za-z0-9]{0,63}$")
            self.assertRegex(verb.get("Clsid"), "^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")
        declared = dict(re.findall(rb'xmlns:(\w+)="([^"]+)"', self.files["AppxManifest.xml"]))
        self.assertEqual(set(self.manifest.get("IgnorableNamespaces").split()), {name.decode() for name in declared})

    def test_pictures_have_the_sizes_that_their_places_ask_for(self):
        look = self.manifest.find(f".//{UAP}VisualElements")
        wanted = {self.manifest.find(f"{FOUNDATION}Properties/{FOUNDATION}Logo").text: 50,
                  look.get("Square44x44Logo"): 44, look.get("Square150x150Logo"): 150}
        for name, size in wanted.items():
            with self.subTest(name):
                self.assertEqual(struct.unpack_from(">II", self.files[name.replace("\\", "/")], 16), (size, size))
        for name in re.findall(r'"(resources/commands/.*)"', (ROOT / "resources/commands.rc").read_text(encoding="utf-8")):
            with self.subTest(name):
                icon = (ROOT / name).read_bytes()
                self.assertEqual([icon[6 + 16 * image] for image in range(icon[4])], [16, 20, 24, 32, 48])

    def test_options(self):
        again = self.work / "again.msix"
        build(again, SOURCE_DATE_EPOCH="1900000000", TZ="Asia/Tokyo")
        self.assertEqual(again.read_bytes(), self.file.read_bytes())
        build(again, "--publisher", 'CN="Owl & Sons", C=NL', "-v", "4.1.65535", "--sign", "printf signed >>")
        self.assertTrue(again.read_bytes().endswith(b"signed"))
        with zipfile.ZipFile(again) as archive:
            identity = ET.fromstring(archive.read("AppxManifest.xml")).find(FOUNDATION + "Identity")
        self.assertEqual((identity.get("Publisher"), identity.get("Version")), ('CN="Owl & Sons", C=NL', "4.1.65535.0"))
        for options in (("-v", "4.1"), ("-v", "4.1.65536"), ("--nope",), ("-v",)):
            with self.subTest(options):
                self.assertNotEqual(build(self.work / "no.msix", *options, code=2), "")
        build(self.work / "no.msix", "--sign", "false", code=1)
        self.assertFalse((self.work / "no.msix").exists())


if __name__ == "__main__":
    unittest.main()
