#!/usr/bin/env python3
"""Reads an exported list back and prints its rows as JSON (a list of lists of texts).

    read_export.py csv FILE          Python's csv reader: UTF-8 with BOM, ";" between fields
    read_export.py ods FILE          the zip and the sheet's XML, read by the format's rules
    read_export.py soffice FILE      LibreOffice converts FILE to CSV (every column as text),
                                     which Python's csv reader then reads; exit 77 without it
"""
import csv
import json
import os
import shutil
import subprocess
import sys
import tempfile
import zipfile
import xml.etree.ElementTree as ET

OFFICE = "urn:oasis:names:tc:opendocument:xmlns:office:1.0"
TABLE = "urn:oasis:names:tc:opendocument:xmlns:table:1.0"
TEXT = "urn:oasis:names:tc:opendocument:xmlns:text:1.0"


def read_csv(path):
    with open(path, "rb") as f:
        raw = f.read()
    if not raw.startswith(b"\xef\xbb\xbf"):
        sys.exit("no byte-order mark")
    with open(path, newline="", encoding="utf-8-sig") as f:
        return [row for row in csv.reader(f, delimiter=";")]


def paragraph_text(p):
    out = [p.text or ""]
    for child in p:
        tag = child.tag.split("}")[1]
        if tag == "s":
            out.append(" " * int(child.get("{%s}c" % TEXT, "1")))
        elif tag == "tab":
            out.append("\t")
        elif tag == "line-break":
            out.append("\n")
        else:
            out.append(paragraph_text(child))
        out.append(child.tail or "")
    return "".join(out)


def read_ods(path):
    with zipfile.ZipFile(path) as z:
        first = z.infolist()[0]
        if first.filename != "mimetype" or first.compress_type != zipfile.ZIP_STORED:
            sys.exit("mimetype is not the first, stored entry")
        if z.read("mimetype") != b"application/vnd.oasis.opendocument.spreadsheet":
            sys.exit("wrong mimetype")
        bad = z.testzip()
        if bad:
            sys.exit("damaged entry " + bad)
        ET.fromstring(z.read("META-INF/manifest.xml"))
        content = ET.fromstring(z.read("content.xml"))
    rows = []
    for row in content.iter("{%s}table-row" % TABLE):
        cells = []
        for cell in row.findall("{%s}table-cell" % TABLE):
            text = "\n".join(paragraph_text(p) for p in cell.findall("{%s}p" % TEXT))
            cells += [text] * int(cell.get("{%s}number-columns-repeated" % TABLE, "1"))
        rows += [cells] * int(row.get("{%s}number-rows-repeated" % TABLE, "1"))
    return rows


def read_soffice(path):
    soffice = shutil.which("soffice")
    if soffice is None:
        sys.exit(77)
    work = tempfile.mkdtemp(prefix="causora-soffice-")
    try:
        # Every column imported as text (format 2), so that no value is taken for a number.
        columns = "/".join("%d/2" % i for i in range(1, 41))
        cmd = [soffice, "-env:UserInstallation=file://" + work + "/profile", "--headless",
               "--convert-to", "csv:Text - txt - csv (StarCalc):59,34,76,1", "--outdir",
               work + "/out"]
        if path.endswith(".csv"):
            cmd += ["--infilter=CSV:59,34,76,1," + columns]
        subprocess.run(cmd + [path], check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=240)
        out = os.path.join(work, "out", os.path.splitext(os.path.basename(path))[0] + ".csv")
        with open(out, newline="", encoding="utf-8-sig") as f:
            return [row for row in csv.reader(f, delimiter=";")]
    finally:
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    kind, path = sys.argv[1:3]
    rows = {"csv": read_csv, "ods": read_ods, "soffice": read_soffice}[kind](path)
    json.dump(rows, sys.stdout, ensure_ascii=True)
