# The package under test is the one built in QUILLON_PYTHON_DIR (<build>/python), build/clang/python
# when that is not set; its C++ reference program lies beside it.
import os
import pathlib
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILT = pathlib.Path(os.environ.get("QUILLON_PYTHON_DIR", ROOT / "build" / "clang" / "python"))
sys.path.insert(0, str(BUILT))


@pytest.fixture(scope="session")
def built_dir():
    return BUILT


@pytest.fixture(scope="session")
def reference():
    """Asks the C++ reference program: one request (a list of fields) per call, one answer."""
    program = BUILT / "quillon_python_reference"

    def ask(*requests):
        lines = "".join("\t".join(str(f) for f in r) + "\n" for r in requests)
        out = subprocess.run([str(program)], input=lines, capture_output=True, text=True, check=True)
        return [line.split("\t") for line in out.stdout.splitlines()]

    return ask
