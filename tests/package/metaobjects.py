#!/usr/bin/env python3
"""Prints what the classes of headers declare to Qt's meta-object system, in declared order.

usage: metaobjects.py MOC HEADER...
"""

import json
import pathlib
import subprocess
import sys
import tempfile

moc, *headers = sys.argv[1:]
with tempfile.TemporaryDirectory() as folder:
    output = pathlib.Path(folder, "moc")
    for header in headers:
        subprocess.run([moc, "--no-notes", "--output-json", "-o", output, header], check=True)
        text = output.with_suffix(".json").read_text()  # Empty if the header has no such class.
        for described in json.loads(text)["classes"] if text else ():
            print(described["qualifiedClassName"])
            for kind in ("properties", "signals", "slots"):
                for item in described.get(kind, []):
                    item.pop("index", None)  # Qt 6 counts them, too.
                    print(" ", json.dumps(item, sort_keys=True))
