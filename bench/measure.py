#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the programs over the generated projects and prints the table of docs/performance.md.

  measure.py BUILD_FOLDER DATA_FOLDER [--runs N] [--quick] [--check]

Times are processor time (user and system) of whole processes, the best of N rounds; the programs take
turns, so that a slow phase of the machine hits all of them. What is short runs several times in a
row and counts on the average: a lucky moment must not favour it over what is long. Ratios are only ever formed between
figures of one call. `--quick` leaves out the stages by themselves, `--check` fails for a missed
target."""

import argparse
import json
import os
import pathlib
import subprocess
import sys
import time

MICRO = ["bench_decode", "bench_line_index", "bench_passes", "bench_incremental",
         "bench_stored", "bench_search", "bench_chart", "bench_format"]
SHAPES = {"comments": "65,530-line modules of comments", "one-procedure": "procedures of 6,000 lines",
          "many-procedures": "1,500 procedures in a class", "continuations": "24 continuations everywhere"}


class Best:
    """The least that a run took, of several rounds."""

    def __init__(self):
        self.seconds = self.wall = float("inf")
        self.peak = 0  # bytes, the most of all runs

    def round(self, command, environment, times):
        seconds, begin = 0.0, time.monotonic()
        for _ in range(times):
            process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                       env=environment)
            errors = process.stderr.read()
            process.stderr.close()
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            if process.returncode != 0:
                sys.exit(f"{' '.join(command)}: exit code {process.returncode}\n"
                         f"{errors.decode(errors='replace')}")
            seconds += usage.ru_utime + usage.ru_stime
            self.peak = max(self.peak, usage.ru_maxrss * 1024)
        self.seconds = min(self.seconds, seconds / times)
        self.wall = min(self.wall, (time.monotonic() - begin) / times)


class Project:
    def __init__(self, folder):
        self.files = sorted(str(f) for f in folder.iterdir())
        self.bytes = self.lines = 0
        for file in self.files:  # this also brings the files into the page cache
            content = pathlib.Path(file).read_bytes()
            self.bytes += len(content)
            self.lines += content.count(b"\n")
        self.oru, self.ctags = Best(), Best()


def ctags_command(project, data):
    listing = data / "files.list"
    listing.write_text("\n".join(project.files) + "\n")
    # No sorting and no pattern is the least that it can do; the Basic parser knows definitions only.
    return ["ctags", "--options=NONE", "--language-force=Basic", "--sort=no", "-f", str(data / "tags"),
            "-L", str(listing)]


def micro(build, data):
    """The benchmarks of the single stages by name: seconds, items and bytes per second, peak memory."""
    found = {}
    for program in MICRO:
        command = [build / "bench" / program, data, "--benchmark_format=json", "--benchmark_min_time=0.2",
                   "--benchmark_repetitions=3", "--benchmark_enable_random_interleaving=true"]
        run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        if run.returncode != 0:
            sys.exit(f"{program}: exit code {run.returncode}\n{run.stderr.decode(errors='replace')}")
        for entry in json.loads(run.stdout)["benchmarks"]:
            if entry["run_type"] != "iteration":
                continue
            scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}[entry["time_unit"]]
            figures = (entry["cpu_time"] * scale, entry.get("items_per_second", 0),
                       entry.get("bytes_per_second", 0), entry.get("peak", 0))
            found[entry["name"]] = min(found.get(entry["name"], figures), figures)
    return found


def row(work, must, value, met):
    print(f"| {work} | {must} | {value} | {'yes' if met else '**no**'} |")
    return met


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("data", type=pathlib.Path)
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--check", action="store_true")
    args = parser.parse_args()

    oru = str(args.build / "src" / "app" / "oru")
    names = ["nothing", "ten-thousand", "million", *SHAPES]
    projects = {name: Project(args.data / name) for name in names}
    # Neither settings nor reports of the user's own.
    environment = dict(os.environ, XDG_DATA_HOME=str((args.data / "no-settings").resolve()))
    book, as_book, unpacking, grep = args.data / "million.xlsm", Best(), Best(), Best()
    for _ in range(args.runs):
        as_book.round([oru, "analyse", "--quiet", "--no-cache", str(book)], environment, 1)
        grep.round(["rg", "--no-config", "--threads=1", "--fixed-strings", "ClsAddr0090",
                    str(args.data / "million")], environment, 4)
        unpacking.round(["unzip", "-tqq", str(book)], environment, 4)
        for name, project in projects.items():
            times = 20 if project.lines < 20000 else 1 if name == "million" else 4
            project.oru.round([oru, "analyse", "--quiet", "--no-cache", str(args.data / name)], environment, times)
            if name == "million":
                project.ctags.round(ctags_command(project, args.data), environment, 4)
    with open(args.data / "tags", "rb") as tags:
        definitions = sum(not line.startswith(b"!") for line in tags)

    start = projects["nothing"].oru.seconds
    def per_line(project):
        return (project.oru.seconds - start) / project.lines

    big, small = projects["million"], projects["ten-thousand"]
    met = []
    print("| work | must reach | measured | met |\n| --- | --- | --- | --- |")
    ratio = big.oru.seconds / big.ctags.seconds
    met.append(row(f"full analysis, {big.lines:,} lines in {len(big.files):,} modules",
                   "3 times ctags; aim 1.5", f"{ratio:.2f} times", ratio <= 3))
    growth = per_line(big) / per_line(small)
    met.append(row(f"time per line, {big.lines:,} lines against {small.lines:,}", "1.2 times at most",
                   f"{growth:.2f} times", growth <= 1.2))
    figures = {} if args.quick else micro(args.build, args.data)
    if figures:
        seconds = {name: figure[0] for name, figure in figures.items()}
        beyond = (seconds["one_module_changed"] - seconds["text_comparison"]) / seconds["full_run"]
        met.append(row("one module of 1,000 changed, beyond the text comparison",
                       "5 % of the full run", f"{100 * beyond:.1f} %", beyond < 0.05))
    if figures:
        stored = seconds["start_stored"] / seconds["start_analysed"]
        met.append(row("analysis file loaded, nothing changed", "25 % of the full run",
                       f"{100 * stored:.0f} %", stored <= 0.25))
        saving = seconds["save_file"] / seconds["load_file"]
        met.append(row("analysis file saved", "twice its loading", f"{saving:.2f} times", saving <= 2))
    if figures:
        ascii_ratio = seconds["search_ascii"] / grep.seconds
        met.append(row("search, an ASCII word with few hits", "2.5 times ripgrep; aim 1",
                       f"{ascii_ratio:.2f} times", ascii_ratio <= 2.5))
        japanese = seconds["search_japanese"] / grep.seconds
        met.append(row("search, a Japanese word, text comparison", "12.5 times ripgrep",
                       f"{japanese:.2f} times", japanese <= 12.5))
        unused = seconds["search_unused_variables"] / big.oru.seconds
        met.append(row("search for unused variables", "1.5 times the full analysis",
                       f"{unused:.2f} times", unused <= 1.5))
        met.append(row("20,000 result rows to RTF", "0.2 s", f"{seconds['result_rtf']:.3f} s",
                       seconds["result_rtf"] <= 0.2))
        formatted = seconds["format_all"] / big.oru.seconds
        met.append(row("every procedure formatted in memory", "the time of the full analysis",
                       f"{formatted:.2f} times", formatted <= 1))
        full = max(seconds["chart_callees"], seconds["chart_callers"])
        met.append(row("a chart of 20,000 calls in full, either way", "0.3 s", f"{full:.3f} s",
                       full <= 0.3))
        limits, peak = seconds["chart_limits"], max(f[3] for f in figures.values()) / 1e6
        met.append(row("a chart that only its limits end, with its process's peak memory",
                       "1 s, 200 MB", f"{limits:.3f} s, {peak:.0f} MB", limits <= 1 and peak <= 200))
    for name, title in SHAPES.items():
        shape = per_line(projects[name]) / per_line(big)
        # What is within the noise of the machine is no worse than the average.
        met.append(row(f"time per line, {title}", "1 times the average", f"{shape:.2f} times", shape <= 1.05))
    book_ratio = (as_book.seconds - unpacking.seconds) / big.oru.seconds
    met.append(row("a workbook of the same modules, without the time of `unzip -t`",
                   "2 times the exported files", f"{book_ratio:.2f} times", book_ratio <= 2))
    memory = big.oru.peak / big.bytes
    met.append(row("peak memory", "6 times the source", f"{memory:.1f} times", memory <= 6))

    print(f"\nBest of {args.runs}: oru {big.oru.seconds:.3f} s ({big.oru.wall:.3f} s by the clock), "
          f"ctags {big.ctags.seconds:.3f} s for {definitions:,} definitions, start of oru {1000 * start:.1f} ms; "
          f"{big.bytes / 1e6:.1f} MB of source, peak {big.oru.peak / 1e6:.0f} MB; "
          f"the workbook {as_book.seconds:.3f} s, unzip {unpacking.seconds:.3f} s, "
          f"ripgrep {grep.seconds:.4f} s, "
          f"{book.stat().st_size / 1e6:.1f} MB, peak {as_book.peak / 1e6:.0f} MB.")
    if figures:
        print("\n| stage | time | a line | rate |\n| --- | --- | --- | --- |")
        for name, (seconds, items, rate, _) in sorted(figures.items()):
            more = f"{1e9 / items:.0f} ns" if items else ""
            print(f"| {name} | {1000 * seconds:.1f} ms | {more} | {f'{rate / 1e6:.0f} MB/s' if rate else ''} |")
    if args.check and not all(met):
        sys.exit("measure.py: a target was missed")


if __name__ == "__main__":
    main()
