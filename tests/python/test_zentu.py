"""The zentu module against zentu-cmd, and its editing through the job document."""

import json
import os
import re
import subprocess
import sys
from pathlib import Path

import pytest
import zentu

ROOT = Path(__file__).resolve().parents[2]
ZENTU_CMD = os.environ.get("ZENTU_CMD", str(ROOT / "build/default/tools/zentu-cmd/zentu-cmd"))
TOPOLOGY = "examples/topology.par"
CUSTOM_SCHEMA = "examples/custom_schema.json"
JOBS = sorted(
    str(path.relative_to(ROOT))
    for folder in ("examples", "tests/cli/bad", "tests/cli/newcomer", "tests/cli/jobs")
    for path in (ROOT / folder).glob("*.par")
)


@pytest.fixture(autouse=True)
def in_repository(monkeypatch):
    """The paths that both front ends print are relative to the repository."""
    monkeypatch.chdir(ROOT)


def schema_args(job):
    """The schema that a job of the examples is written for: its own, or the built-in one."""
    custom = "custom" in job
    return (["--schema", CUSTOM_SCHEMA], zentu.Schema.load(CUSTOM_SCHEMA)) if custom else ([], None)


def cli(*args, failed=2):
    """The standard output of zentu-cmd, or None when it exits with the status of failure."""
    run = subprocess.run([ZENTU_CMD, *args], capture_output=True, encoding="utf-8", errors="replace")
    return None if run.returncode == failed else run.stdout


def python_or_none(call):
    """What call returns, or None when it raises zentu.Error."""
    try:
        return call()
    except zentu.Error:
        return None


def text_of(command, name):
    """The text of the command's item of that name."""
    return next(item.text for item in command.items if item.name == name)


@pytest.mark.parametrize("job", JOBS)
def test_dump_format_expand_and_check_match_zentu_cmd(job):
    options, schema = schema_args(job)
    dump = cli(*options, "dump", job)
    assert python_or_none(lambda: zentu.read(job, schema).to_dict()) == (dump and json.loads(dump))
    expand = cli(*options, "expand", job)
    assert python_or_none(lambda: zentu.read(job, schema).text(canonical=True)) == expand
    text = (ROOT / job).read_text(errors="replace")
    for flags in ([], ["--canonical"]):
        expected = cli(*options, "format", *flags, job)
        assert python_or_none(lambda: zentu.format(text, schema, bool(flags))) == expected
    report = json.loads(cli(*options, "check", "--format", "json", job, failed=None))
    keys = ["severity", "code", "message", "line", "column", "end_line", "end_column", "suggestion"]
    found = [{key: getattr(finding, key) for key in keys} for finding in zentu.check(job, schema)]
    assert found == report["files"][0]["diagnostics"]


def test_complete_later_equals_complete_at_reading():
    job = zentu.read(TOPOLOGY, complete=False)
    assert job.to_dict() != zentu.read(TOPOLOGY).to_dict()
    job.complete()
    assert job.to_dict() == zentu.read(TOPOLOGY).to_dict()


def test_commands_queries_and_lazy_items():
    job = zentu.read(TOPOLOGY)
    assert [c.identifier for c in job.commands("CONSTRAINT")] == ["MAX_VOLUME", "MAX_DEFLECTION"]
    assert len(job) == len(list(job)) == len(job.to_dict()["commands"])
    command = job.find("Max_Volume")
    assert (command.kind, command.keyword, command.line) == ("CONSTRAINT", "CONSTRAINT", 106)
    assert command.to_dict() == job.to_dict()["commands"][[c.identifier for c in job].index("MAX_VOLUME")]
    assert [item.to_dict() for item in command.items] == command.to_dict()["items"]
    dresp = next(item for item in command.items if item.name == "DRESP")
    assert (dresp.reference, dresp.text, dresp.line) == ("VOL", "VOL", 108)
    assert job.find("nothing") is None


VOLUME = "  ID_NAME = max_volume\n  DRESP = vol\n  TYPE = LESS_EQUAL\n  MAGNITUDE = REL\n  VALUE = 0.3\n"
EDITS = [
    (lambda job: job.find("max_volume").set("value", "0.25"), "VALUE = 0.3\n", "VALUE = 0.25\n"),
    (lambda job: job.find("max_volume").set("LOWER", "0.1"), VOLUME, VOLUME + "  LOWER = 0.1\n"),
    (lambda job: job.find("max_volume").remove("MAGNITUDE"), "  MAGNITUDE = REL\n", ""),
    (
        lambda job: job.find("non_design").set("ELEMENT_GROUP", "1-10,\n20"),
        "  ELEMENT_GROUP = 7001-7640\n",
        "  ELEMENT_GROUP\n    1-10,\n    20\n",
    ),
    (
        lambda job: job.find("design_space").set("ELEMENT_GROUP", "1"),
        "  ELEMENT_GROUP\n    1-2400,\n    2405-2600:5,\n    2701-3850,\n"
        "    4001-4120, 4122, 4124-4180:2,\n    5001-6999\n",
        "  ELEMENT_GROUP\n    1\n",
    ),
    (lambda job: job.remove(job.find("max_volume")), "CONSTRAINT\n" + VOLUME + "END_\n\n", ""),
]


@pytest.mark.parametrize("edit, before, after", EDITS)
def test_edits_change_only_their_lines(edit, before, after, tmp_path):
    job = zentu.read(TOPOLOGY)
    original = job.text()
    edit(job)
    assert original.count(before) >= 1 and job.text() == original.replace(before, after, 1)
    job.write(tmp_path / "edited.par")
    assert zentu.read(tmp_path / "edited.par").to_dict()["commands"] == job.to_dict()["commands"]


def test_added_command_reads_back_and_removing_it_restores_the_file():
    job = zentu.read(TOPOLOGY)
    original = job.text()
    added = job.add_command("DRESP", "mass")
    added.set("TYPE", "VOLUME")
    assert job.text() == original + "\nDRESP\n  ID_NAME = mass\n  TYPE = VOLUME\nEND_\n"
    assert text_of(job.find("mass"), "TYPE") == "VOLUME"
    job.remove(added)
    assert job.text() == original


def test_commands_follow_edits_until_removed():
    job = zentu.read(TOPOLOGY)
    later, removed = job.find("max_deflection"), job.find("c1")
    job.remove(removed)
    later.set("VALUE", "2.5")
    assert (later.line, text_of(job.find("max_deflection"), "VALUE")) == (109, "2.5")
    with pytest.raises(zentu.Error, match="not written"):
        removed.set("LOADCASE", "3")


REFUSED = [
    (TOPOLOGY, lambda job: job.find("max_volume").set("VALUE", "abc"), 111),
    (TOPOLOGY, lambda job: job.find("max_volume").set("VALUE", "1\nEND_"), None),
    (TOPOLOGY, lambda job: job.find("max_volume").remove("NOTHING"), None),
    (TOPOLOGY, lambda job: job.find("max_volume").set("#VALUE", "1"), None),
    (TOPOLOGY, lambda job: job.find("max_volume").set("VALUE X", "1"), None),
    ("examples/loadcases.par", lambda job: job.commands("STOP")[0].set("ITER_MAX", "5"), None),
]


@pytest.mark.parametrize("path, edit, line", REFUSED)
def test_refused_edits_raise_and_keep_the_job(path, edit, line):
    job = zentu.read(path)
    original = job.text()
    with pytest.raises(zentu.Error) as raised:
        edit(job)
    assert job.text() == original
    assert line is None or (raised.value.path, raised.value.line) == (path, line)


WRONG_CALLS = [
    (lambda: zentu.read(42), TypeError),
    (lambda: zentu.format(None), TypeError),
    (lambda: zentu.read(TOPOLOGY).find("c1").set("VALUE", 3), TypeError),
    (lambda: zentu.read(TOPOLOGY).commands("NO_KIND"), ValueError),
    (lambda: zentu.read(TOPOLOGY).remove(zentu.read(TOPOLOGY).find("c1")), ValueError),
    (lambda: zentu.Schema.load("tests/cli/bad_schema/not_json.json"), zentu.Error),
    (lambda: zentu.format("END_\n"), zentu.Error),
]


@pytest.mark.parametrize("call, error", WRONG_CALLS)
def test_wrong_calls_raise(call, error):
    with pytest.raises(error):
        call()


@pytest.mark.parametrize(
    "path, line, message",
    [("missing.par", None, "cannot be opened"), ("tests/cli/bad/truncated.par", 4, "ends inside")],
)
def test_unreadable_jobs_raise_located_errors(path, line, message):
    with pytest.raises(zentu.Error) as raised:
        zentu.read(path)
    assert (raised.value.path, raised.value.line) == (path, line)
    assert message in raised.value.message and str(raised.value).startswith(path + ":")


def test_readme_python_script_writes_checked_variants(tmp_path):
    readme = (ROOT / "README.md").read_text()
    script = re.search(r"## Python\n.*?```python\n(.*?)```", readme, re.S).group(1)
    (tmp_path / "examples").symlink_to(ROOT / "examples")
    package = {"PYTHONPATH": str(Path(zentu.__file__).parents[1])}
    run = subprocess.run([sys.executable, "-c", script], cwd=tmp_path, capture_output=True,
                         text=True, env={**os.environ, **package})
    assert run.returncode == 0, run.stderr
    variants = sorted(tmp_path.glob("variant_*.par"))
    values = {text_of(zentu.read(v).find("max_volume"), "VALUE") for v in variants}
    assert len(variants) == len(values) == 20
