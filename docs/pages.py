#!/usr/bin/env python3
"""Prints a page for Doxygen, which follows no link to a heading of another page or to an example: gives
each heading a name, and turns such links into references."""

import pathlib
import re
import sys

page = pathlib.Path(sys.argv[1])


def name(heading):
    return page.stem + "-" + re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


code = False
for line in page.read_text().splitlines():
    code ^= line.startswith("```")
    if not code and line.startswith("##"):
        line += " {#" + name(line.lstrip("# ")) + "}"
    line = re.sub(r"\]\(#", f"]({page.name}#", line)
    line = re.sub(r"\]\((\w+)\.md#", r"](@ref \1-", line)
    line = re.sub(r"\]\(\.\./examples/(\w+\.\w+)\)", r"](@ref \1)", line)
    print(re.sub(r"\[([^]]+)\]\(\.\./[^)]+\)", r"\1", line))
