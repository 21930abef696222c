"""Times zentu.read of a generated job against the same reading from C++ (BM_ReadTypedJob).

    PYTHONPATH=build/perf/python python3 bench/python_read.py build/perf [commands]

Both read the generator's job in the built-in schema's words with the built-in schema and
complete it; both times are processor times, medians of five runs. The optimisation that Python
reads names a design variable, which the schema requires and the generator leaves out, so that
the read succeeds: one line of some 700,000.
"""

import json
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import zentu

RUNS = 5


def builtin_job(build, commands, folder):
    """The generated job with its group lists named as the built-in schema names them."""
    path = Path(folder) / f"builtin_{commands}.par"
    subprocess.run([str(build / "bench/zentu_generate_job"), str(commands), str(path)], check=True)
    text = path.read_bytes().replace(b"  ELEMENTS", b"  ELEMENT_GROUP")
    path.write_bytes(text.replace(b"  STRATEGY = MMA", b"  DV = D1"))
    return path


def python_seconds(path):
    """The median processor time of zentu.read; the job is released outside the time."""
    times = []
    for _ in range(RUNS):
        start = time.process_time()
        job = zentu.read(path)
        times.append(time.process_time() - start)
        del job
    return statistics.median(times)


def cpp_seconds(build, commands):
    """The median processor time of BM_ReadTypedJob on a job of the same size."""
    run = subprocess.run(
        [str(build / "bench/ZentuBenchmarks"), f"--benchmark_filter=BM_ReadTypedJob/{commands}$",
         f"--benchmark_repetitions={RUNS}", "--benchmark_format=json"],
        check=True, capture_output=True, text=True)
    runs = [b for b in json.loads(run.stdout)["benchmarks"] if b["run_type"] == "iteration"]
    scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    return statistics.median(b["cpu_time"] * scale[b["time_unit"]] for b in runs)


def main():
    build = Path(sys.argv[1])
    commands = int(sys.argv[2]) if len(sys.argv) > 2 else 100000
    with tempfile.TemporaryDirectory() as folder:
        python = python_seconds(builtin_job(build, commands, folder))
    cpp = cpp_seconds(build, commands)
    print(f"{commands} commands: Python {python * 1e3:.0f} ms, C++ {cpp * 1e3:.0f} ms, "
          f"ratio {python / cpp:.2f}")


if __name__ == "__main__":
    main()
