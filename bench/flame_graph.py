#!/usr/bin/python3 -B
"""Where the processor's time goes: flame_graph.py BRINDLE FLOOR SVG. Plays a start with 1,000 entries, 20 copies and 20
openings under perf.
"""
import collections
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

from program import PROGRAM, Brindle, Measured, text

FLAME_GRAPH = "/usr/share/perl5/Devel/NYTProf/flamegraph.pl"


def record(data):
    with Measured(1000) as measured, tempfile.NamedTemporaryFile("w", suffix=".sh") as perf:
        perf.write(f"#!/bin/sh\nexec perf record -q -F 5000 --call-graph dwarf,16384 -o {data} {os.path.abspath(PROGRAM)}\n")
        perf.flush()
        os.chmod(perf.name, 0o700)
        perf.file.close()  # a file that is open for writing cannot be run
        brindle = Brindle(measured.desktop, perf.name)
        for number in range(20):
            copied = text(10**6 + number, 1024)
            measured.desktop.copy(copied)
            measured.desktop.wait_for(lambda: brindle.contents()[:1] == [copied], 5, "captured")
            brindle.open()
            brindle.press_hot_key()
            brindle.await_closed()
        pid = brindle.process.pid
        for child in pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text().split():
            os.kill(int(child), signal.SIGTERM)
        brindle.process.wait()


def folded(data):
    """Lines of a stack from the outermost function inwards and how often it was seen."""
    stacks = collections.Counter()
    script = subprocess.run(["perf", "script", "-i", data, "-F", "comm,ip,sym"], check=True, stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, text=True).stdout
    for sample in script.split("\n\n"):
        comm, *frames = sample.strip("\n").split("\n")
        names = [frame.split(None, 1)[-1].strip() for frame in frames]
        names = [re.sub(r"\(.*|<.*", "", name).replace("brindle::", "") or "?" for name in names if "[unknown]" not in name]
        if comm.strip() and names:
            stacks[";".join([comm.strip(), *reversed(names)])] += 1
    return "".join(f"{stack} {count}\n" for stack, count in stacks.items())


def main(svg):
    with tempfile.NamedTemporaryFile() as data:
        record(data.name)
        graph = subprocess.run(["perl", FLAME_GRAPH, "--title", "Brindle: start, 20 copies, 20 openings; 1,000 entries",
                                "--minwidth", "4", "--nametype", "", "--hash"], input=folded(data.name), check=True,
                               stdout=subprocess.PIPE, text=True).stdout
    pathlib.Path(svg).write_text(graph)


if __name__ == "__main__":
    main(sys.argv[3])
