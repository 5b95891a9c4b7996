#!/usr/bin/env python3
"""Prints what the classes of headers declare to Qt's meta-object system, in declared order.

usage: metaobjects.py [--all] MOC HEADER...    --all: with enumerations and invokable methods
"""

import json
import pathlib
import subprocess
import sys
import tempfile

kinds = ["properties", "signals", "slots"]
arguments = sys.argv[1:]
if arguments[0] == "--all":
    del arguments[0]
    kinds = ["enums", *kinds, "methods"]
moc, *headers = arguments
with tempfile.TemporaryDirectory() as folder:
    output = pathlib.Path(folder, "moc")
    for header in headers:
        subprocess.run([moc, "--no-notes", "--output-json", "-o", output, header], check=True)
        text = output.with_suffix(".json").read_text()  # Empty if the header has no such class.
        for described in json.loads(text)["classes"] if text else ():
            print(described["qualifiedClassName"])
            for kind in kinds:
                for item in described.get(kind, []):
                    item.pop("index", None)  # Qt 6 counts them, too.
                    print(" ", json.dumps(item, sort_keys=True))
