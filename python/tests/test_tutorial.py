"""docs/python.md runs: its `python` blocks, in order, in one namespace, in a folder prepared
as its setup section says (the sample databases of `caudalis init`, the examples)."""
import os
import re
import subprocess

import pytest

from conftest import SOURCE_DIR

TUTORIAL = SOURCE_DIR / "docs" / "python.md"
CLI = os.environ.get("CAUDALIS_CLI")


def code_blocks(language):
    return re.findall(rf"^```{language}\n(.*?)^```", TUTORIAL.read_text(encoding="utf-8"), re.S | re.M)


def test_the_setup_is_the_command_lines_init():
    assert code_blocks("sh") == ["caudalis init .          # catalogue.db (the sample nozzle catalogue) and project.db\n"]


@pytest.fixture
def workspace(tmp_path, monkeypatch):
    subprocess.run([CLI, "init", str(tmp_path)], check=True, capture_output=True)
    (tmp_path / "examples").symlink_to(SOURCE_DIR / "examples")
    monkeypatch.chdir(tmp_path)
    return tmp_path


def test_every_python_block_of_the_tutorial_runs(workspace, capsys):
    blocks = code_blocks("python")
    assert len(blocks) >= 8
    namespace = {"__name__": "tutorial"}
    for number, block in enumerate(blocks, start=1):
        exec(compile(block, f"{TUTORIAL.name} block {number}", "exec"), namespace)
    printed = capsys.readouterr().out
    for name in ("realistic.png", "small-evaluation.png"):
        assert (workspace / name).read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"
        assert (workspace / name).stat().st_size > 20_000
    assert (workspace / "realistic-outlets.csv").read_text().startswith(namespace["outlets"].columns[0])
    assert namespace["strategy"].asked >= 2 * namespace["wrapper"].numeroTotalDeSaidas()
    assert namespace["computed"].Tramos.count() == 2
    assert "invalid-input" in printed and "length_m" in printed
    assert "bad-readings.txt line 2" in printed
    assert "gone: this object stood for an element that is gone" in printed
    assert namespace["spans"][1].longitude == 60.0
    assert re.search(r"error -?\d+ Caudalis .+\nTrue\n", printed)
    assert namespace["trimmed"].document["end_gun_zone"]["collectors"] > 0
