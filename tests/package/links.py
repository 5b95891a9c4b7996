#!/usr/bin/env python3
"""Fails where a link within a folder of HTML leads nowhere.

usage: links.py FOLDER
"""

import pathlib
import re
import sys
from urllib.parse import unquote

pages = {page.name: page.read_text() for page in pathlib.Path(sys.argv[1]).glob("*.html")}
names = {page: set(re.findall(r'(?:id|name)="([^"]+)"', text)) for page, text in pages.items()}
links = {(page, unquote(link)) for page, text in pages.items()
         for link in re.findall(r'(?:href|src)="(?![a-z]+:)([^"]+)"', text)}
dead = []
for page, link in sorted(links):
    file, _, place = link.partition("#")
    file = file or page
    if not pathlib.Path(sys.argv[1], file).exists() or place and place not in names[file]:
        dead.append(f"{page}: {link}")
print("\n".join(dead) or f"{len(links)} links lead somewhere")
sys.exit(1 if dead or not links else 0)
