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


@pytest.mark.parametrize("block", [
    "<!-- docs-test: skip shown only -->\n```sh\ncaudalis design small.json --plot small.png\n```\n",
    "```sh\necho && caudalis catalogue list --colour red\n```\n",
])
def test_an_unknown_option_fails_even_in_a_block_not_run(tmp_path, block):
    done = run(tmp_path, block)
    assert done.returncode == 1
    assert "has no option --" in done.stderr


def test_an_unknown_command_fails(tmp_path):
    done = run(tmp_path, "<!-- docs-test: skip shown only -->\n```sh\ncaudalis plot small.json\n```\n")
    assert done.returncode == 1
    assert "unknown command" in done.stderr


def test_output_the_program_does_not_print_fails(tmp_path):
    done = run(tmp_path, "```console\n$ caudalis init\ncatalogue database: ... (created, 399 nozzles)\n```\n")
    assert done.returncode == 1
    assert "(created, 399 nozzles)" in done.stderr


def test_a_failing_block_fails_with_its_message(tmp_path):
    done = run(tmp_path, "```sh\ncaudalis design missing.json\n```\n")
    assert done.returncode == 1
    assert "missing.json" in done.stderr and "exit 1" in done.stderr


def test_a_python_block_that_raises_fails(tmp_path):
    done = run(tmp_path, "```python\nimport caudalis\ncaudalis.design('missing.json')\n```\n")
    assert done.returncode == 1
    assert "page.md block 1" in done.stderr


def test_an_unknown_option_in_the_prose_fails(tmp_path):
    done = run(tmp_path, "Print it with `caudalis design FILE [--plot PNG]`.\n")
    assert done.returncode == 1
    assert "line 1, `caudalis design FILE [--plot PNG]`" in done.stderr and "has no option --plot" in done.stderr


def test_a_postgresql_example_without_the_server_fails_and_says_why(tmp_path):
    os.environ.pop("CAUDALIS_TEST_POSTGRESQL", None)
    done = run(tmp_path, "```sh\ncaudalis init --project 'postgresql://?schema=project'\n```\n")
    assert done.returncode == 1
    assert "needs the tests' PostgreSQL server" in done.stderr


def test_an_option_quoted_alone_that_no_command_has_fails(tmp_path):
    done = run(tmp_path, "and `--plot FILE.png` draws the plots.\n")
    assert done.returncode == 1
    assert "no command of the program has the option --plot" in done.stderr
