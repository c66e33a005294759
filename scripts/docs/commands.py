"""Writes the reference of every command and option of `caudalis` from the program's own --help."""

import re
import subprocess

import pagefile

SUBCOMMANDS = re.compile(r"^Subcommands:\n((?:  \S.*\n?)+)", re.MULTILINE)


def help_text(program, path):
    run = subprocess.run([program, *path, "--help"], capture_output=True, text=True, check=True)
    return run.stdout.rstrip() + "\n"


def subcommands(text):
    found = SUBCOMMANDS.search(text)
    if not found:
        return []
    return [line.split()[0] for line in found.group(1).splitlines() if line.strip()]


def walk(program, path=()):
    """Yields (command path, help text) for the program and every subcommand, depth first."""
    text = help_text(program, list(path))
    yield path, text
    for name in subcommands(text):
        yield from walk(program, (*path, name))


def page(program):
    out = [
        "# Commands and options",
        "",
        "Every command of `caudalis` with its options, exactly as the program's `--help` prints",
        "them (this page is written from that output each time the site is built). Exit codes,",
        "messages and the databases the commands take: [The command line](cli.md).",
        "",
    ]
    for path, text in walk(program):
        title = " ".join(("caudalis", *path))
        out += [f"## `{title}`", "", "```text", text.rstrip(), "```", ""]
    return "\n".join(out)


if __name__ == "__main__":
    pagefile.main(page)
