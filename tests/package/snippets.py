#!/usr/bin/env python3
"""Every snippet of the README, the guide and the headers is part of a file that is built or run."""

import pathlib
import re
import sys


def flat(text):
    """The text without its indentation, which depends on where it stands."""
    return "\n".join(line.strip() for line in text.splitlines())


root = pathlib.Path(__file__).resolve().parents[2]
code = [flat(file.read_text()) for file in (root / "examples").rglob("*") if file.suffix in (".cpp", ".qml")]

checked = 0
stray = []
pages = [root / "README.md", *sorted((root / "docs").glob("*.md")), *root.glob("quorvane*/**/*.h")]
for page in pages:
    fences = r"^ *\\code\n(.*?)^ *\\endcode" if page.suffix == ".h" else r"^```(?:cpp|qml)\n(.*?)^```"
    for snippet in re.findall(fences, page.read_text(), re.S | re.M):
        checked += 1
        if not any(flat(snippet) in text for text in code):
            stray.append(f"{page.name}: in no example:\n{snippet}")

print("\n".join(stray) or f"{checked} snippets stand in the examples")
sys.exit(1 if stray or not checked else 0)
