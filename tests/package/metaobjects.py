#!/usr/bin/env python3
"""Compares what the classes declare to Qt's meta-object system with the list of this version.

usage: metaobjects.py MOC LIST HEADER...
"""

import difflib
import json
import pathlib
import subprocess
import sys
import tempfile

moc, known, *headers = sys.argv[1:]
lines = []
with tempfile.TemporaryDirectory() as folder:
    for header in headers:
        output = pathlib.Path(folder, pathlib.Path(header).stem)
        subprocess.run([moc, "--no-notes", "--output-json", "-o", output, header], check=True)
    files = sorted(pathlib.Path(folder).glob("*.json"))
    for part in json.loads(subprocess.check_output([moc, "--collect-json", *files])):
        for described in part["classes"]:
            lines.append(described["qualifiedClassName"])
            for kind in ("properties", "signals", "slots"):
                lines += ["  " + json.dumps(item, sort_keys=True) for item in described.get(kind, [])]
changes = list(difflib.unified_diff(pathlib.Path(known).read_text().splitlines(), lines, lineterm=""))
print("\n".join(changes))
sys.exit(bool(changes))
