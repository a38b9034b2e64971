#!/usr/bin/env python3
"""Makes faults in the portable core and runs the native suites on them: what ./mutate does.

A fault is another piece of text at one place of one source. The sources are formatted all alike, so
that their operators can be told by the blanks around them.
"""

import collections
import filecmp
import hashlib
import json
import os
import pathlib
import queue
import re
import shutil
import subprocess
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPIES = ROOT / "build" / "mutate"
PRESET = "native-mutate"
# A fault in a header compiles nearly everything anew: a dozen sources at a time, that takes a quarter.
HEADERS = "native-mutate-headers"
# What a fuzzer does with a fault: so many runs of the same course.
FUZZ = ["-seed=1", "-runs=5000", "-max_len=512", "-len_control=0", "-timeout=60"]

OTHERS = {
    "&&": ["||"], "||": ["&&"], "==": ["!="], "!=": ["=="],
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "+=": ["-="], "-=": ["+="],
    "true": ["false"], "false": ["true"], "++": ["--"], "--": ["++"],
}
NO_STATEMENT = re.compile(
    r"(return|using|if|for|while|do|else|switch|case|default|break|continue|class|struct|enum|const|"
    r"constexpr|auto|static|static_assert|template|typedef|public|private|protected|virtual|explicit|"
    r"friend|inline|extern|namespace)\b")


def blanked(text):
    """The text with blanks in place of comments, directives and literals; and the texts in it."""
    literals = []

    def blank(match):
        if match.group(1) is not None and match.group(1) != '""':
            literals.append((match.start(1), match.group(1)))
        return re.sub(r"[^\n]", " ", match.group(0))

    pattern = r"//[^\n]*|^ *#(?:[^\n]*\\\n)*[^\n]*|[LuU]?(\"(?:\\.|[^\"\\\n])*\")|[LuU]?'(?:\\.|[^'\\\n])+'"
    # Digits may be separated by single quotes.
    text = re.sub(r"(?<=\d)'(?=\d)", "0", text)
    return re.sub(pattern, blank, text, flags=re.M), literals


def closing(code, start):
    """Where the bracket that opens at `start` is closed."""
    depth = 0
    for place in range(start, len(code)):
        depth += (code[place] in "([{") - (code[place] in ")]}")
        if depth == 0:
            return place
    return len(code)


def faults_of(path, text, enumerators):
    """All faults of a source, as (path, start, end, other text)."""
    code, literals = blanked(text)
    found = []

    def add(start, end, other):
        found.append((path, start, end, other))

    for match in re.finditer(r"(?<= )(&&|\|\||[=!<>]=|[<>+*/%-]|[+-]=)(?= |\n)|\b(?:true|false)\b|\+\+|--", code):
        for other in OTHERS[match.group(0)]:
            add(match.start(), match.end(), other)
    for match in re.finditer(r"(?<=[ (])!(?=[\w(])", code):
        add(match.start(), match.end(), "")
    for match in re.finditer(r"\b(?:if|while) \(", code):
        end = closing(code, match.end() - 1)
        if ";" not in code[match.end():end]:
            add(match.end(), end, "!(" + text[match.end():end] + ")")
    for match in re.finditer(r"(?<![\w.])(?<!\) = )(?<!const = )(?<!noexcept = )\d+(?:\.\d+)?(?![\w.])", code):
        number = text[match.start():match.end()].replace("'", "")
        add(match.start(), match.end(), str(float(number) + 1 if "." in number else int(number) + 1))
    for match in re.finditer(r"\b(\w+)::(k[A-Z]\w*)\b", code):
        names = enumerators[match.group(1)]
        if len(names) > 1:
            add(match.start(2), match.end(2), names[(names.index(match.group(2)) + 1) % len(names)])
    for match in re.finditer(r"(?<=[\w>]\()([\w:.>()-]+)(, )([\w:.>()-]+)(?=[,)])", code):
        # Of these, the order makes no difference.
        if not re.search(r"\b(?:min|max)(?:<[^()]*>)?\($", code[:match.start()]) and all(
                part.count("(") == part.count(")") for part in match.group(1, 3)):
            add(match.start(), match.end(), match.group(3) + ", " + match.group(1))
    for match in re.finditer(r"\breturn (?=[^;{])", code):
        end = code.find(";", match.end())
        if not re.search(r"\{|^(?:true|false|0|nullptr|std::nullopt)$", code[match.end():end]):
            add(match.end(), end, "{}")
    # A statement that stands by itself.
    for match in re.finditer(r"(?:(?<=[;{}:)]\n)|(?<=else\n)|(?<=\n\n)) {4,}(?=[a-z_(*+-])|(?<=\) )(?=[a-z_]\w*[ .(=-])", code):
        start = match.end()
        end = code.find(";", start)
        statement = code[start:end]
        while statement.count("{") > statement.count("}") and end > 0:
            end = code.find(";", end + 1)
            statement = code[start:end]
        if end > 0 and not NO_STATEMENT.match(statement) and re.search(
                r"[(=]|\+\+|--", statement) and statement.count("(") == statement.count(")"):
            add(start, end, "")
    for start, literal in literals:
        # Another letter in the middle, not one that a backslash makes something else of.
        places = [i for i in range(1, len(literal) - 1)
                  if literal[i].isalnum() and "\\" not in literal[max(0, i - 5):i]]
        if places:
            place = start + places[len(places) // 2]
            add(place, place + 1, "x" if text[place] not in "xX" else "y")
    return found


def core():
    """The texts of the sources of the portable core, by their paths."""
    listed = subprocess.run(["git", "ls-files", "src"], cwd=ROOT, capture_output=True, text=True,
                            check=True).stdout.split()
    return {path: (ROOT / path).read_text(encoding="utf-8") for path in listed
            if path.endswith((".cpp", ".h")) and not re.search(
                r"^src/windows/|_test\.cpp$", path)}


def all_faults(texts):
    """The faults of each source, by its path."""
    enumerators = {}
    for text in texts.values():
        for kind, name in re.findall(r"\b(\w+)::(k[A-Z]\w*)\b", text):
            names = enumerators.setdefault(kind, [])
            if name not in names:
                names.append(name)
    return {path: faults_of(path, text, enumerators) for path, text in texts.items()}


class Copy:
    """A copy of the project, with what has been built of it."""

    def __init__(self, number):
        self.root = COPIES / str(number)
        listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"],
                                cwd=ROOT, capture_output=True, text=True, check=True).stdout
        paths = [path for path in listed.splitlines() if (ROOT / path).is_file()]
        for path in paths:
            target = self.root / path
            if not target.exists() or not filecmp.cmp(ROOT / path, target, shallow=False):
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(ROOT / path, target)
        for path in self.root.rglob("*"):
            if path.is_file() and self.root / "build" not in path.parents and str(
                    path.relative_to(self.root)) not in paths:
                path.unlink()
        for preset in PRESET, HEADERS:
            if not (self.build(preset) / "build.ninja").exists():
                self.run(["cmake", "--preset", preset], None, check=True)

    def build(self, preset):
        return self.root / "build" / preset

    def run(self, command, seconds, env=None, check=False):
        """What the command gives back and prints; 124 when it takes too long."""
        process = subprocess.Popen(command, cwd=self.root, text=True,
                                   env=os.environ | self.cached() | (env or {}),
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, errors="replace",
                                   start_new_session=True)
        try:
            output = process.communicate(timeout=seconds)[0]
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, 9)
            return 124, process.communicate()[0]
        if check and process.returncode != 0:
            sys.exit(output)
        return process.returncode, output

    def cached(self):
        """Lets the compiler's cache serve all copies alike."""
        return {"CCACHE_BASEDIR": str(self.root), "CCACHE_NOHASHDIR": "1"}

    def make(self, preset, target):
        return self.run(["ninja", "-C", str(self.build(preset)), "-j1", target], None)

    def make_all(self, presets):
        for preset in presets:
            self.run(["ninja", "-C", str(self.build(preset)), "-j2", "all"], None, check=True)

    def suites(self):
        """All suites, with the time that they take. They have to pass."""
        listed = json.loads(self.run(
            ["ctest", "--test-dir", str(self.build(PRESET)), "--show-only=json-v1"], None, check=True)[1])
        suites = []
        for test in listed["tests"]:
            properties = {p["name"]: p["value"] for p in test["properties"]}
            suites.append(Suite(test["name"], test["command"], dict(
                pair.split("=", 1) for pair in properties.get("ENVIRONMENT", []))))
        for source in sorted((self.root / "fuzzers").glob("*_fuzz.cpp")):
            suites.append(Suite(source.stem, [str(self.build(PRESET) / "bin" / source.stem), *FUZZ], {}))
        for suite in suites:
            started = time.monotonic()
            status, output = suite.run(self, None)
            if status != 0:
                sys.exit(f"{output}\n{suite.name} fails without a fault")
            suite.seconds = time.monotonic() - started
            print(f"{suite.name}: {suite.seconds:.1f} s", flush=True)
        return suites


class Suite:
    def __init__(self, name, command, env):
        self.name = name
        self.command = command
        self.env = env
        self.seconds = 0.0
        self.noticed = 0

    def run(self, copy, seconds, fail_fast=False, preset=PRESET):
        # Each copy has its own programs.
        command = [re.sub(rf"^{COPIES}/\d+/build/{PRESET}/", f"{copy.build(preset)}/", word)
                   for word in self.command]
        return copy.run(command, seconds, self.env | {"GTEST_FAIL_FAST": str(int(fail_fast))})


def tests_that_fail(suite, status, output):
    if status == 0:
        return set()
    failed = set(re.findall(r"^\[  FAILED  \] (\w+[./][\w./]+)", output, flags=re.M))
    begun = re.findall(r"^\[ RUN      \] (\S+)", output, flags=re.M)
    # One that breaks off has not been told of.
    return failed or ({begun[-1]} if begun else {suite.name})


def notice(copy, suites, text, fault, each):
    """What notices the fault: None when it does not compile, an empty set when nothing does."""
    path, start, end, other = fault
    (copy.root / path).write_text(text[:start] + other + text[end:], encoding="utf-8")
    noticed = set()
    preset = HEADERS if path.endswith(".h") else PRESET
    try:
        # First what has noticed most so far, then the quickest.
        for suite in sorted(suites, key=lambda suite: (-suite.noticed, suite.seconds)):
            if copy.make(preset, os.path.basename(suite.command[0]))[0] != 0:
                return None
            status, output = suite.run(copy, 10 * suite.seconds + 30, not each, preset)
            suite.noticed += status != 0
            noticed |= tests_that_fail(suite, status, output)
            if noticed and not each:
                break
        return noticed
    finally:
        (copy.root / path).write_text(text, encoding="utf-8")


def change(text, fault):
    """The lines before and after."""
    _, start, end, other = fault
    first = text.rfind("\n", 0, start) + 1
    last = text.find("\n", end)
    was = " ".join(text[first:last].split())
    now = " ".join((text[first:start] + other + text[end:last]).split())
    return f"    {was}\n    {now}"


def shown(text, fault):
    path, start, _, _ = fault
    line = text.count("\n", 0, start) + 1
    return f"{path}:{line}\n{change(text, fault)}"


def in_order_of(seed, texts, faults):
    """Shuffled in a way that a change of the sources leaves alone, but for the faults in what changed."""
    seen = collections.Counter()

    def rank(fault):
        name = f"{seed} {fault[0]} {change(texts[fault[0]], fault)}"
        seen[name] += 1
        return hashlib.sha256(f"{name} {seen[name]}".encode()).digest()

    return sorted(faults, key=rank)


def main():
    seed, count, each, files = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3] == "true", sys.argv[4:]
    texts = core()
    faults = all_faults(texts)
    for path in files:
        if path not in faults:
            sys.exit(f"{path} is no source of the portable core")
    chosen = in_order_of(seed, texts, [fault for path in files or faults for fault in faults[path]])
    # Each copy does one thing after another.
    copies = [Copy(number) for number in range(len(os.sched_getaffinity(0)))]
    presets = {HEADERS if fault[0].endswith(".h") else PRESET for fault in chosen} | {PRESET}
    for copy in copies:
        copy.make_all(presets)
    suites = copies[0].suites()
    print(f"{len(chosen)} faults to choose from", flush=True)

    results = []
    left = queue.SimpleQueue()
    for fault in chosen:
        left.put(fault)
    lock = threading.Lock()

    def work(copy):
        while count == 0 or len(results) < count:
            try:
                fault = left.get_nowait()
            except queue.Empty:
                return
            noticed = notice(copy, suites, texts[fault[0]], fault, each)
            with lock:
                if noticed is None or (count and len(results) >= count):
                    continue
                results.append((fault, noticed))
                by = ", ".join(sorted(noticed)[:3]) or "NOTHING"
                print(f"{len(results)}: {shown(texts[fault[0]], fault)}\n    noticed by {by}", flush=True)

    threads = [threading.Thread(target=work, args=(copy,), daemon=True) for copy in copies]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()

    survivors = [fault for fault, noticed in results if not noticed]
    if each:
        alone = {name for _, noticed in results if len(noticed) == 1 for name in noticed}
        others = {name for _, noticed in results for name in noticed} - alone
        print("\nTests that alone notice a fault:", *sorted(alone), sep="\n  ")
        print("Tests that notice only what others notice, too:", *sorted(others), sep="\n  ")
    print(f"\n{len(results)} faults, {len(results) - len(survivors)} noticed, "
          f"{len(survivors)} not noticed:")
    for fault in sorted(survivors):
        print(shown(texts[fault[0]], fault))
    return 0


if __name__ == "__main__":
    sys.exit(main())
