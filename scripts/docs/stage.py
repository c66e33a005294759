"""Lays out the documentation site's sources in a build folder: docs/ as it is, the database
description from data/README.md, and the reference pages written from the program, the schema,
the module and the headers. Links that leave the site become the repository path they name."""

import pathlib
import re
import shutil
import sys

LINK = re.compile(r"\[([^\]]+)\]\((?!https?:|#|mailto:)([^)#\s]+)(#[^)]*)?\)")


def unlink_outside(page, site):
    """Turns links to files outside the site into the repository path they name, in code."""
    text = page.read_text(encoding="utf-8")

    def replace(match):
        target = (page.parent / match.group(2)).resolve()
        if target.is_relative_to(site.resolve()):  # MkDocs checks these (--strict)
            return match.group(0)
        repository_path = pathlib.Path(match.group(2)).as_posix().lstrip("./")
        return f"{match.group(1)} (`{repository_path}` in the repository)"

    page.write_text(LINK.sub(replace, text), encoding="utf-8")


def main():
    source, site = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    if site.exists():
        shutil.rmtree(site)
    shutil.copytree(source / "docs", site)
    (site / "reference").mkdir(exist_ok=True)
    shutil.copy(source / "data" / "README.md", site / "reference" / "databases.md")
    for page in site.rglob("*.md"):
        unlink_outside(page, site)


if __name__ == "__main__":
    main()
