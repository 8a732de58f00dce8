# SPDX-License-Identifier: MIT
"""Plants faults, one at a time, and tells which of them the tests catch (see tests/faults.txt)."""

import argparse
import collections
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
COPY = ROOT / "build" / "test-the-tests"
TREE = COPY / "tree"
BUILD = COPY / "build"
# Compiled and linked as fast as it goes; the copy's path does not hinder the compiler cache.
CONFIGURE = ["cmake", "-G", "Ninja", "-S", TREE, "-B", BUILD,
             "-DCMAKE_CXX_FLAGS=-O0", "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=gold"]
QUIET = {"stdout": subprocess.PIPE, "stderr": subprocess.STDOUT, "text": True}

Fault = collections.namedtuple("Fault", "place file text replacement reason")
Test = collections.namedtuple("Test", "name command environment directory program sources seconds")


def read_faults(path):
    """The faults of the list; each is a block of lines between blank ones."""
    faults, file = [], None
    lines = path.read_text().splitlines() + [""]
    block, begin = [], 0
    for number, line in enumerate(lines, 1):
        if line.startswith("== "):
            file = line[3:]
        elif line and not line.startswith("#"):
            begin = begin if block else number
            block.append(line)
        elif not line and block:
            part = {mark: [rest[2:] for rest in block if rest[:1] == mark] for mark in "-+?"}
            faults.append(Fault(f"faults.txt:{begin}", file, "\n".join(part["-"]),
                                "\n".join(part["+"]), " ".join(part["?"])))
            block = []
    return faults


def planted(fault, original):
    """A file's text with the fault; None when it does not apply exactly once."""
    text = fault.text + ("" if fault.replacement else "\n")
    if not fault.text or original.count(fault.text) != 1 or fault.text == fault.replacement:
        return None
    return original.replace(text if text in original else fault.text, fault.replacement)


def write(path, content):
    """Writes a file only if that changes it, so that nothing else is built again."""
    if not path.exists() or path.read_bytes() != content:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def copy_tree():
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True).stdout
    files = {name for name in listed.split("\0") if name and (ROOT / name).is_file()}
    for old in [path for path in TREE.rglob("*") if path.is_file()]:
        if str(old.relative_to(TREE)) not in files:
            old.unlink()
    for name in files:
        write(TREE / name, (ROOT / name).read_bytes())
        shutil.copymode(ROOT / name, TREE / name)


def ninja(*arguments):
    return subprocess.run(["ninja", "-C", BUILD, *arguments], check=False, **QUIET)


def compiled_from():
    """The files that each object was made from, as the compiler told."""
    made_from, target = collections.defaultdict(set), None
    for line in ninja("-t", "deps").stdout.splitlines():
        if line and not line.startswith(" "):
            target = line.partition(":")[0]
        elif line.strip().startswith(str(TREE)) or line.strip().startswith(".."):
            path = pathlib.Path(os.path.normpath(BUILD / line.strip()))
            made_from[target].add(path)
    return made_from


def sources_of(program, made_from):
    """The files of the tree that a program and what it needs at run time are made from."""
    sources = set()
    for name in ninja("-t", "inputs", program).stdout.splitlines():
        sources.add(pathlib.Path(os.path.normpath(BUILD / name)))
        sources |= made_from.get(name, set())
    return {str(path.relative_to(TREE)) for path in sources if TREE in path.parents}


def run(test, limit):
    """Runs a test. True when it passes; None when it takes longer than so many seconds."""
    try:
        return subprocess.run(test.command, cwd=test.directory, env=test.environment, check=False,
                              timeout=limit, **QUIET).returncode == 0
    except subprocess.TimeoutExpired:
        return None


def read_tests():
    listed = subprocess.run(["ctest", "--show-only=json-v1"], cwd=BUILD, check=True, text=True,
                            stdout=subprocess.PIPE).stdout
    made_from = compiled_from()
    tests = []
    for entry in json.loads(listed)["tests"]:
        values = {value["name"]: value["value"] for value in entry["properties"]}
        program = next(os.path.relpath(word, BUILD) for word in reversed(entry["command"])
                       if word.startswith(str(BUILD)))
        variables = dict(line.split("=", 1) for line in values["ENVIRONMENT"])
        test = Test(entry["name"], entry["command"], {**os.environ, **variables},
                    values["WORKING_DIRECTORY"], program, sources_of(program, made_from), 0)
        begin = time.monotonic()
        if not run(test, 300):
            sys.exit(f"{test.name} fails without a fault")
        tests.append(test._replace(seconds=time.monotonic() - begin))
    return tests


def judge(fault, tests, caught_before):
    """Which test catches a planted fault: its name, "" for none; None when it does not compile."""
    concerned = [test for test in tests if fault.file in test.sources]
    # What caught a neighbour catches this one, likely; else the shortest test comes first.
    places = [fault.file, os.path.dirname(fault.file)]
    concerned.sort(key=lambda test: (*(-caught_before[place, test.name] for place in places),
                                     test.seconds))
    for test in concerned:
        if ninja(test.program).returncode != 0:
            return None
        passed = run(test, 10 + 5 * test.seconds)
        if not passed:
            for place in places:
                caught_before[place, test.name] += 1
            return test.name + (" by time-out" if passed is None else "")
    return ""


def plant(fault, tests, caught_before):
    """The outcome of one fault, "caught", "survivor" or "error", and what there is to say."""
    target = TREE / fault.file
    original = target.read_bytes() if target.is_file() else b""
    content = planted(fault, original.decode())
    if content is None:
        return "error", "does not apply"
    write(target, content.encode())
    try:
        catcher = judge(fault, tests, caught_before)
    finally:
        write(target, original)
    if catcher is None:
        return "error", "does not compile"
    if catcher:
        return "caught", catcher + (" in spite of its reason" if fault.reason else "")
    return "survivor", fault.reason or "NOBODY NOTICED"


def main():
    parser = argparse.ArgumentParser(prog="scripts/test-the-tests")
    parser.add_argument("--every", type=int, default=1, metavar="K", help="plant every K-th fault")
    parser.add_argument("--folder", default="", help="plant the faults of this folder only")
    options = parser.parse_args()
    faults = [fault for fault in read_faults(ROOT / "tests" / "faults.txt")
              if fault.file.startswith(options.folder)][::options.every]

    copy_tree()
    subprocess.run(CONFIGURE, check=True, stdout=subprocess.DEVNULL)
    if ninja("tests/all").returncode != 0:
        sys.exit("the tests do not build without a fault")
    tests = read_tests()
    counts, caught_before = collections.defaultdict(collections.Counter), collections.Counter()
    unexplained, begin = 0, time.monotonic()
    for fault in faults:
        start = time.monotonic()
        outcome, remark = plant(fault, tests, caught_before)
        counts[os.path.dirname(fault.file)][outcome] += 1
        unexplained += outcome == "survivor" and not fault.reason
        print(f"{outcome:8} {fault.place} {fault.file}: {fault.text.splitlines()[0].strip()}"
              f" [{remark}, {time.monotonic() - start:.1f} s]", flush=True)

    total = sum(counts.values(), collections.Counter())
    for folder, count in [*sorted(counts.items()), ("all", total)]:
        planted_here = count["caught"] + count["survivor"]
        share = 100 * count["caught"] / planted_here if planted_here else 0
        print(f"{folder:10} {count['caught']} of {planted_here} caught, {share:.0f} %")
    print(f"{len(faults)} faults in {time.monotonic() - begin:.0f} s")
    sys.exit(1 if total["error"] or unexplained else 0)


main()
