"""The type stubs shipped with the package are those the built module gives."""
import ast
import subprocess
import sys

import caudalis

from conftest import SOURCE_DIR

STUBS = SOURCE_DIR / "python" / "caudalis" / "_caudalis.pyi"


def test_the_stubs_are_up_to_date(tmp_path):
    fresh = tmp_path / "_caudalis.pyi"
    subprocess.run([sys.executable, str(SOURCE_DIR / "python" / "tools" / "generate_stubs.py"), str(fresh)],
                   check=True)
    assert fresh.read_text() == STUBS.read_text(), "regenerate python/caudalis/_caudalis.pyi (see README)"


def test_the_stubs_name_every_service_class():
    tree = ast.parse(STUBS.read_text())
    services = next(node for node in tree.body if isinstance(node, ast.ClassDef) and node.name == "services")
    named = {node.name for node in services.body if isinstance(node, ast.ClassDef)}
    bound = {name for name, value in vars(caudalis.services).items() if isinstance(value, type)}
    assert {"FieldEvaluator", "WettedDiameters", "DesignFile", "ReadingsError"} <= bound
    assert named == bound
