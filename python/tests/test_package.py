import ast
import doctest
import os
import pathlib
import subprocess
import sys

import quillon
import quillon._core
import quillon.units

STUB = pathlib.Path(__file__).resolve().parents[1] / "quillon" / "_core.pyi"


def test_docstring_examples_hold():
    for module in (quillon, quillon.units):
        assert doctest.testmod(module).failed == 0


def test_type_stub_names_every_public_call():
    tree = ast.parse(STUB.read_text())
    stubbed = {n.name for n in tree.body if isinstance(n, (ast.ClassDef, ast.FunctionDef))}
    compiled = {n for n in dir(quillon._core) if not n.startswith("__")}
    assert stubbed == compiled
    for node in tree.body:
        if isinstance(node, ast.ClassDef) and node.name != "ContourTextError":
            cls = getattr(quillon._core, node.name)
            members = {n.name for n in node.body if isinstance(n, ast.FunctionDef)}
            public = {n for n in vars(cls) if not n.startswith("_")}
            assert public <= members, node.name


def test_imports_from_an_installed_prefix(built_dir, tmp_path):
    # DESTDIR puts the install under tmp_path whether the package directory is absolute (the
    # interpreter's site-packages) or relative to the prefix.
    env = dict(os.environ, DESTDIR=str(tmp_path))
    subprocess.run(["cmake", "--install", str(built_dir.parent), "--component", "python",
                    "--prefix", "/prefix"], env=env, check=True, capture_output=True)
    [init] = tmp_path.rglob("quillon/__init__.py")
    assert (init.parent / "_core.pyi").exists() and (init.parent / "py.typed").exists()
    code = ("import quillon; s = quillon.Shape.circle((0, 0), 1) - quillon.Shape.circle((0, 0), 0.5);"
            "print(quillon.__file__, round(s.area, 12))")
    out = subprocess.run([sys.executable, "-c", code], cwd=tmp_path, check=True, text=True,
                         capture_output=True, env={"PYTHONPATH": str(init.parent.parent)})
    where, area = out.stdout.split()
    assert pathlib.Path(where).is_relative_to(tmp_path)
    assert float(area) == round(0.75 * 3.141592653589793, 12)


def test_readme_session_is_real_output(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)  # the session writes a file
    readme = (pathlib.Path(__file__).resolve().parents[2] / "README.md").read_text()
    session = readme.split("```pycon\n", 1)[1].split("```", 1)[0]
    test = doctest.DocTestParser().get_doctest(session, {}, "README", "README.md", 0)
    runner = doctest.DocTestRunner()
    runner.run(test)
    assert runner.summarize().failed == 0 and runner.summarize().attempted > 5
