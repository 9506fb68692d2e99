#!/usr/bin/env python3
"""Makes the unsigned package of Windows 11's menu: a zip file with a map of its blocks. scripts/build-package.sh calls it.

    make_package.py --version A.B.C.D --publisher NAME --class-id ID --logos FOLDER OUTPUT.msix

The same input gives the same bytes: the files carry no time but the first that a zip file knows, for the installer's product code
follows from this file too.
"""
import argparse
import base64
import hashlib
import pathlib
import sys
import xml.sax.saxutils
import zipfile

BLOCK = 64 * 1024  # what one hash of the block map covers
LOCAL_HEADER = 30  # a local file header without the name that follows
ROOT = pathlib.Path(__file__).resolve().parent

CONTENT_TYPES = b"""<?xml version="1.0" encoding="UTF-8" standalone="no"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">\
<Default Extension="png" ContentType="image/png"/>\
<Default Extension="xml" ContentType="application/vnd.ms-appx.manifest+xml"/>\
<Override PartName="/AppxBlockMap.xml" ContentType="application/vnd.ms-appx.blockmap+xml"/></Types>"""


def manifest(arguments):
    text = (ROOT / "AppxManifest.xml.in").read_text(encoding="utf-8")
    values = {"VERSION": arguments.version, "PUBLISHER": arguments.publisher, "CLASS": arguments.class_id}
    for name, value in values.items():
        text = text.replace(f"@{name}@", xml.sax.saxutils.escape(value, {'"': "&quot;"}))
    return text.encode("utf-8")


def block_map(files):
    """Nothing is compressed, so a block needs no size of its own."""
    text = ('<?xml version="1.0" encoding="UTF-8" standalone="no"?>\n'
            '<BlockMap xmlns="http://schemas.microsoft.com/appx/2010/blockmap" '
            'HashMethod="http://www.w3.org/2001/04/xmlenc#sha256">')
    for name, data in files.items():
        header = LOCAL_HEADER + len(name.encode("ascii"))
        text += f'<File Name="{name.replace("/", chr(92))}" Size="{len(data)}" LfhSize="{header}">'
        for start in range(0, len(data), BLOCK):
            digest = base64.b64encode(hashlib.sha256(data[start:start + BLOCK]).digest()).decode("ascii")
            text += f'<Block Hash="{digest}"/>'
        text += "</File>"
    return (text + "</BlockMap>").encode("ascii")


def write(output, files):
    with zipfile.ZipFile(output, "w", zipfile.ZIP_STORED) as archive:
        for name, data in files.items():
            entry = zipfile.ZipInfo(name)
            entry.create_system = 0  # no permissions
            archive.writestr(entry, data)


def main():
    parser = argparse.ArgumentParser(description="Makes the unsigned package of Windows 11's menu.")
    parser.add_argument("--version", required=True)
    parser.add_argument("--publisher", required=True)
    parser.add_argument("--class-id", required=True)
    parser.add_argument("--logos", required=True, type=pathlib.Path)
    parser.add_argument("output", type=pathlib.Path)
    arguments = parser.parse_args()
    files = {f"logos/{path.name}": path.read_bytes() for path in sorted(arguments.logos.glob("*.png"))}
    files["AppxManifest.xml"] = manifest(arguments)
    files["AppxBlockMap.xml"] = block_map(files)
    files["[Content_Types].xml"] = CONTENT_TYPES
    write(arguments.output, files)
    return 0


if __name__ == "__main__":
    sys.exit(main())
