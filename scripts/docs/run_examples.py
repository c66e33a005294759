"""Runs every command and code block of README.md and docs/ so that they cannot drift from the
program: each page in a scratch folder of its own, which is also $HOME (new databases; the
repository's examples/, data/ and tests/ and the build tree as build/ beside them), with the built
`caudalis` first on PATH and the built Python package importable.

  ```sh / ```bash   run with bash -e; must succeed
  ```console        "$ command" lines run; the other lines are the output shown (abridged where
                    a line is "..."; "..." within a line stands for any text): each must
                    be an output line, in order
  ```python         run in one namespace per page, in order
  ```json           must parse; with <!-- docs-test: file NAME --> just before, saved as NAME
  other fences      with <!-- docs-test: file NAME --> saved as NAME, else shown only

<!-- docs-test: skip REASON --> just before a block shows it without running it (a server, root,
Windows); <!-- docs-test: setup COMMANDS --> runs COMMANDS first (files the reader brings, such as
the crew's own readings, taken from examples/). In every block, run or not, and in the commands
quoted in the prose (`caudalis design FILE --save NAME`), each `caudalis` command line is checked
against the program's own --help: an unknown command or option fails the test. An option quoted on
its own in the prose (`--report FILE`) must be an option of some command.

Usage: run_examples.py BUILD-DIR SOURCE-DIR [PAGE...]
"""

import contextlib
import io
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import commands  # noqa: E402

FENCE = re.compile(r"^(?:<!-- docs-test: (skip|file|setup) ?([^\n]*?) -->\n)?```([\w-]*)\n(.*?)^```\s*$", re.S | re.M)
OPTION_LINE = re.compile(r"^  (-\S+)", re.M)
INLINE = re.compile(r"`(caudalis [^`]*)`")
INLINE_OPTION = re.compile(r"`(--[a-z][\w-]*)[ =`]")


class Failure(Exception):
    pass


def command_table(program):
    """{command path: (options, subcommands)} from the program's --help."""
    table = {}
    for path, text in commands.walk(program):
        options = set()
        for line in OPTION_LINE.findall(text):
            options.update(name.split("=")[0] for name in line.split(",") if name.startswith("-"))
        table[path] = (options, set(commands.subcommands(text)))
    return table


def caudalis_invocations(block):
    """The argument lists of every `caudalis` command in a block of shell text."""
    text = re.sub(r"\\\n", " ", block)
    for line in text.splitlines():
        line = re.sub(r"^\s*\$ ", "", line).split("#")[0]
        for part in re.split(r"&&|\|\||;|\||\$\(", line):
            try:
                words = shlex.split(part)
            except ValueError:
                words = part.split()
            while words and re.match(r"^\w+=", words[0]):
                words = words[1:]
            if words and pathlib.Path(words[0]).name == "caudalis":
                yield words[1:]


def check_options(arguments, table, where):
    path, allowed = (), set(table[()][0])
    for word in arguments:
        subs = table[path][1]
        if word.startswith("-"):
            name = word.split("=")[0]
            if name not in allowed:
                raise Failure(f"{where}: `caudalis {' '.join(path)}` has no option {name}")
        elif word in subs:
            path = (*path, word)
            allowed |= table[path][0]
    if path == () and arguments and arguments[0] not in ("--help", "-h", "--version"):
        raise Failure(f"{where}: unknown command in `caudalis {' '.join(arguments)}`")


def check_inline(text, table, where):
    """Command lines quoted in the prose (`caudalis evaluate show ID [--json]`): optional parts in
    brackets and alternatives with | count as written."""
    for match in INLINE.finditer(FENCE.sub("", text)):
        words = re.sub(r"[\[\]|]|\.\.\.", " ", match.group(1)).split()
        line = text.count("\n", 0, text.find(match.group(0))) + 1
        check_options(words[1:], table, f"{where} (line {line}, `{' '.join(match.group(1).split())}`)")
    every_option = set().union(*(options for options, _ in table.values()))
    for match in INLINE_OPTION.finditer(FENCE.sub("", text)):
        if match.group(1) not in every_option:
            raise Failure(f"{where}: no command of the program has the option {match.group(1)} (`{match.group(1)} ...`)")


def postgresql_server():
    """libpq's variables for the tests' throwaway PostgreSQL server (ctest's fixture writes the
    state file CAUDALIS_TEST_POSTGRESQL names: its folder, then its port), or none."""
    state = os.environ.get("CAUDALIS_TEST_POSTGRESQL")
    if not state:
        return {}
    port = pathlib.Path(state).read_text(encoding="utf-8").split("\n")[1].strip()
    return {"PGHOST": "127.0.0.1", "PGPORT": port, "PGUSER": "caudalis", "PGDATABASE": "postgres"}


def run_shell(code, folder, env, where):
    if "postgresql://" in code and "PGPORT" not in env:
        raise Failure(f"{where}: needs the tests' PostgreSQL server: run it through ctest, which starts one")
    run = subprocess.run(["bash", "-e", "-o", "pipefail", "-c", code], cwd=folder, env=env,
                         capture_output=True, text=True, timeout=300)
    if run.returncode != 0:
        raise Failure(f"{where}: exit {run.returncode}\n{code}\n--- stdout\n{run.stdout}\n--- stderr\n{run.stderr}")
    return run.stdout + run.stderr


def run_console(block, folder, env, where):
    commands_shown, expected = [], []
    for line in block.splitlines():
        if line.startswith("$ "):
            commands_shown.append(line[2:])
        elif commands_shown:
            expected.append(line.rstrip())
    output = run_shell("\n".join(commands_shown), folder, env, where).splitlines()
    position = 0
    for line in (e for e in expected if e.strip() not in ("...", "…", "")):
        shown = re.compile(".*".join(re.escape(part) for part in line.split("...")) + "$")
        while position < len(output) and not shown.match(output[position].rstrip()):
            position += 1
        if position == len(output):
            raise Failure(f"{where}: the output shown has a line the program did not print (in this order):\n{line}")
        position += 1


def run_page(page, table, folder, env):
    namespace = {"__name__": "docs"}
    text = page.read_text(encoding="utf-8")
    check_inline(text, table, page.name)
    for number, match in enumerate(FENCE.finditer(text), start=1):
        directive, argument, language, block = match.groups()
        where = f"{page.name} block {number} (line {text.count(chr(10), 0, match.start()) + 1})"
        for arguments in caudalis_invocations(block) if language in ("sh", "bash", "console", "") else ():
            check_options(arguments, table, where)
        if directive == "file":
            (folder / argument).write_text(block, encoding="utf-8")
        if language == "json":
            json.loads(block)
        if directive == "skip":
            continue
        if directive == "setup":
            run_shell(argument, folder, env, where)
        if language in ("sh", "bash"):
            run_shell(block, folder, env, where)
        elif language == "console":
            run_console(block, folder, env, where)
        elif language == "python":
            previous = os.getcwd()
            os.chdir(folder)
            try:
                with contextlib.redirect_stdout(io.StringIO()):
                    exec(compile(block, where, "exec"), namespace)
            except Exception as error:
                raise Failure(f"{where}: {type(error).__name__}: {error}") from error
            finally:
                os.chdir(previous)


def pages(source, chosen):
    if chosen:
        return [pathlib.Path(p).resolve() for p in chosen]
    return [source / "README.md", *sorted((source / "docs").rglob("*.md")), source / "data" / "README.md"]


def main():
    build, source = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    program, python_path = build / "apps" / "caudalis" / "caudalis", str(build / "python")
    table = command_table(str(program))
    env = dict(os.environ, PATH=f"{program.parent}:{os.environ['PATH']}", PYTHONPATH=python_path,
               CAUDALIS_DATA_DIR=str(source / "data"), MPLBACKEND="Agg", PYTHONDONTWRITEBYTECODE="1")
    env.update(postgresql_server())
    os.environ.update(MPLBACKEND="Agg", CAUDALIS_CLI=str(program))
    sys.path.insert(0, python_path)
    failures, blocks = [], 0
    for page in pages(source, sys.argv[3:]):
        with tempfile.TemporaryDirectory(prefix="caudalis-docs-") as scratch:
            folder = pathlib.Path(scratch)
            for name in ("examples", "data", "tests"):
                (folder / name).symlink_to(source / name)
            (folder / "build").symlink_to(build)
            env["HOME"] = scratch
            try:
                run_page(page, table, folder, env)
                status = "ok"
            except Failure as failure:
                failures.append(str(failure))
                status = "FAILED"
        blocks += len(FENCE.findall(page.read_text(encoding="utf-8")))
        print(f"{page.relative_to(source) if page.is_relative_to(source) else page}: {status}", flush=True)
    print(f"{blocks} code blocks in {len(pages(source, sys.argv[3:]))} pages")
    for failure in failures:
        print(failure, file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
