#!/usr/bin/env python3
"""Shows that the tests notice faults: builds the product with every fault of faults.txt behind a switch, then
switches them on one at a time and runs the test suites that should notice.

    tools/seeded_faults/run.py                      the product and the tests of HEAD
    tools/seeded_faults/run.py --tests-from REV     the same faults before the tests of another revision
    tools/seeded_faults/run.py hair-height undo     only the faults whose names contain these words
    tools/seeded_faults/run.py --in FOLDER          the same, and the build stays there for the next run

All chosen faults share one build in a scratch worktree: each becomes (SEEDED_FAULT(n) ? new : old), and the
environment variable SEEDED_FAULT chooses n. Other files are compiled as always, so that a compiler cache knows them.
Exit status 1: a fault goes unnoticed, or its code is no longer there.
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
PRODUCT = ("source", "sdk", "host", "cli")
SECONDS = 300  # that one run of a suite may take; a fault may also make it hang

SWITCH = """#ifndef SEEDED_FAULT
#include <cstdlib>
inline const int kSeededFault = std::getenv("SEEDED_FAULT") ? std::atoi(std::getenv("SEEDED_FAULT")) : 0;
#define SEEDED_FAULT(n) (kSeededFault == (n))
#endif
"""


class Fault:
    """One entry of faults.txt: name, file, code with @{old => new}@ or @do{old => new}@, and suites."""

    def __init__(self, number, name, fields):
        self.number, self.name, self.file = number, name, fields["file"]
        self.suites = fields["seen"].split()
        parts = re.fullmatch(r"(.*)@(do)?\{(.*) => (.*)\}@(.*)", fields["code"])
        if not parts:
            sys.exit(f"{name}: the code has no @{{old => new}}@")
        self.before, statement, self.old, self.new, self.after = parts.groups()
        form = "if (SEEDED_FAULT({n})) {{ {new} }} else {{ {old} }}" if statement else "(SEEDED_FAULT({n}) ? ({new}) : ({old}))"
        self.seeded = form.format(n=number, new=self.new, old=self.old)


def read_faults():
    faults = []
    for entry in re.split(r"\n\s*\n", (HERE / "faults.txt").read_text()):
        lines = [line for line in entry.splitlines() if line and not line.startswith("#")]
        if lines:
            fields = dict(line.split(": ", 1) for line in lines[1:])
            faults.append(Fault(len(faults) + 1, lines[0], fields))
    return faults


def find(text, fault):
    """Begin and end of the old code; blanks and line ends do not count. None unless it is there exactly once."""
    places = [i for i, c in enumerate(text) if not c.isspace()]
    bare = "".join(text[i] for i in places)
    before, old, after = ("".join(part.split()) for part in (fault.before, fault.old, fault.after))
    at = bare.find(before + old + after)
    if at < 0 or bare.find(before + old + after, at + 1) >= 0:
        return None
    return places[at + len(before)], places[at + len(before) + len(old) - 1] + 1


def locate(scratch, fault):
    """The file that holds the code: the one that is named, else the only one of that name, else the only one at all."""
    files = [f for folder in PRODUCT for f in (scratch / folder).rglob("*") if f.suffix in (".cpp", ".h")]
    named = [f for f in files if f.name == pathlib.Path(fault.file).name]
    for candidates in ([scratch / fault.file], named, files):
        found = [(f, place) for f in candidates if f.is_file() for place in [find(f.read_text(), fault)] if place]
        if len(found) == 1:
            return found[0]
    return None


def seed(scratch, faults):
    """Puts every fault into the scratch copy; gives those whose code is not there."""
    lost, edits = [], {}
    for fault in faults:
        found = locate(scratch, fault)
        if found:
            edits.setdefault(found[0], []).append((found[1], fault.seeded))
        else:
            lost.append(fault)
    for file, changes in edits.items():
        text = file.read_text()
        for (begin, end), seeded in sorted(changes, reverse=True):
            text = text[:begin] + seeded + text[end:]
        file.write_text(SWITCH + text)
    return lost


def call(*command, cwd=ROOT):
    result = subprocess.run(command, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if result.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{result.stdout[-4000:]}")
    return result.stdout


def make_scratch(folder, tests_from):
    scratch = folder / "product"
    if scratch.exists():
        call("git", "checkout", "--force", "--detach", call("git", "rev-parse", "HEAD").strip(), cwd=scratch)
    else:
        call("git", "worktree", "add", "--detach", scratch, "HEAD")
    if tests_from:
        shutil.rmtree(scratch / "tests")
        call("git", "checkout", tests_from, "--", "tests", cwd=scratch)
    if (ROOT / "build/deps").is_dir():
        shutil.copytree(ROOT / "build/deps", scratch / "build/deps", dirs_exist_ok=True)
    return scratch


def build(scratch, jobs):
    ccache = shutil.which("ccache")
    launcher = [f"-DCMAKE_CXX_COMPILER_LAUNCHER={ccache}", f"-DCMAKE_C_COMPILER_LAUNCHER={ccache}"] if ccache else []
    call("cmake", "--preset", "release", *launcher, cwd=scratch)
    targets = re.findall(r"^(test_\w+):", call("ninja", "-C", "build/release", "-t", "targets", "all", cwd=scratch), re.M)
    call("cmake", "--build", "--preset", "release", "-j", str(jobs), "--target", *targets, cwd=scratch)
    return sorted(scratch / "build/release/tests" / target for target in set(targets))


def suites_of(programs):
    """Programs by the names of their suites, without what parameters add to them."""
    owners = {}
    for program in programs:
        for line in subprocess.run([program, "--gtest_list_tests"], stdout=subprocess.PIPE, text=True).stdout.splitlines():
            if line.endswith(".") or ".  #" in line:
                for part in line.split(".")[0].split("/"):
                    owners.setdefault(part, set()).add(program)
    return owners


def run(program, suite, number):
    """None when the suite passes; else its first failing test, or how it ended."""
    names = f"{suite}.*:*/{suite}.*:{suite}/*.*:*/{suite}/*.*"
    environment = dict(os.environ, SEEDED_FAULT=str(number))
    environment.pop("KELVRA_TEST_DATA", None)
    try:
        result = subprocess.run([program, f"--gtest_filter={names}", "--gtest_brief=1"], env=environment, timeout=SECONDS,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, errors="replace")
    except subprocess.TimeoutExpired:
        return f"{suite} (hangs)"
    if result.returncode == 0:
        return None
    failed = re.search(r"\[  FAILED  \] ([\w./]+)", result.stdout)
    return failed.group(1) if failed else f"{suite} (ends with status {result.returncode})"


def notice(fault, owners):
    for suite in fault.suites:
        for program in sorted(owners.get(suite, ())):
            found = run(program, suite, fault.number)
            if found:
                return found
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("words", nargs="*")
    parser.add_argument("--tests-from", metavar="REV")
    parser.add_argument("--in", dest="folder", type=pathlib.Path, help="where to build; it stays there")
    parser.add_argument("--list", action="store_true", help="only check that the code of each fault is there")
    parser.add_argument("-j", "--jobs", type=int, default=os.cpu_count())
    options = parser.parse_args()
    faults = read_faults()
    chosen = [f for f in faults if not options.words or any(word in f.name for word in options.words)]
    if options.list:
        lost = [f for f in chosen if not locate(ROOT, f)]
        for fault in lost:
            print(f"{fault.name:32} NO LONGER APPLIES to {fault.file}")
        print(f"{len(chosen)} faults, {len(lost)} no longer apply")
        return bool(lost)
    folder = options.folder.resolve() if options.folder else pathlib.Path(tempfile.mkdtemp(prefix="seeded-faults-"))
    try:
        scratch = make_scratch(folder, options.tests_from)
        lost = seed(scratch, chosen)
        owners = suites_of(build(scratch, options.jobs))
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as workers:
            pairs = sorted({(p, s) for f in chosen for s in f.suites for p in owners.get(s, ())})
            for broken in filter(None, workers.map(lambda pair: run(*pair, 0), pairs)):
                sys.exit(f"{broken} fails without any fault")
            found = list(workers.map(lambda f: None if f in lost else notice(f, owners), chosen))
    finally:
        if not options.folder:
            subprocess.run(["git", "worktree", "remove", "--force", folder / "product"], cwd=ROOT)
            shutil.rmtree(folder, ignore_errors=True)
    for fault, noticed in zip(chosen, found):
        what = "NO LONGER APPLIES" if fault in lost else f"noticed by {noticed}" if noticed else "NOT NOTICED"
        print(f"{fault.name:32} {what}")
    print(f"{len(chosen)} faults, {sum(map(bool, found))} noticed")
    return not all(found)


if __name__ == "__main__":
    sys.exit(main())
