"""The docs runner fails on what would let the docs drift: an unknown option (also in a block it
does not run), output the program does not print, a block that fails; it passes a page that is right."""

import os
import pathlib
import subprocess
import sys

import pytest

HERE = pathlib.Path(__file__).parent
SOURCE = HERE.parent.parent
BUILD = pathlib.Path(os.environ["PYTHONPATH"]).parent


def run(tmp_path, text):
    page = tmp_path / "page.md"
    page.write_text(text, encoding="utf-8")
    return subprocess.run([sys.executable, str(HERE / "run_examples.py"), str(BUILD), str(SOURCE), str(page)],
                          capture_output=True, text=True)


def test_a_right_page_passes(tmp_path):
    done = run(tmp_path, "```console\n$ caudalis init\n...\n$ caudalis catalogue brands\n...Nimbra...\n```\n")
    assert done.returncode == 0, done.stderr
    assert "page.md: ok" in done.stdout


FAILING_PAGES = {
    "an unknown option in a block not run": (
        "<!-- docs-test: skip shown only -->\n```sh\ncaudalis design small.json --plot small.png\n```\n",
        ["has no option --plot"]),
    "an unknown option after another command": (
        "```sh\necho && caudalis catalogue list --colour red\n```\n", ["has no option --colour"]),
    "an unknown command": (
        "<!-- docs-test: skip shown only -->\n```sh\ncaudalis plot small.json\n```\n", ["unknown command"]),
    "output the program does not print": (
        "```console\n$ caudalis init\ncatalogue database: ... (created, 399 nozzles)\n```\n", ["(created, 399 nozzles)"]),
    "a failing block": ("```sh\ncaudalis design missing.json\n```\n", ["missing.json", "exit 1"]),
    "a Python block that raises": (
        "```python\nimport caudalis\ncaudalis.design('missing.json')\n```\n", ["page.md block 1"]),
    "an unknown option in the prose": (
        "Print it with `caudalis design FILE [--plot PNG]`.\n",
        ["line 1, `caudalis design FILE [--plot PNG]`", "has no option --plot"]),
    "an option quoted alone that no command has": (
        "and `--plot FILE.png` draws the plots.\n", ["no command of the program has the option --plot"]),
    "a PostgreSQL example without the tests' server": (
        "```sh\ncaudalis init --project 'postgresql://?schema=project'\n```\n", ["needs the tests' PostgreSQL server"]),
}


@pytest.mark.parametrize("case", sorted(FAILING_PAGES))
def test_a_page_that_drifted_fails_and_says_where(tmp_path, monkeypatch, case):
    monkeypatch.delenv("CAUDALIS_TEST_POSTGRESQL", raising=False)
    text, messages = FAILING_PAGES[case]
    done = run(tmp_path, text)
    assert done.returncode == 1
    for message in messages:
        assert message in done.stderr
