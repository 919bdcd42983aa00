#!/usr/bin/env python3
"""Changes the library in one small way at a time, and tells which changes no test notices.

  Scripts/Mutate.py --count 100 --seed 7                         a random sample of all sources
  Scripts/Mutate.py --files 'Sources/Core/Groundwork/*'          ... of some
  Scripts/Mutate.py --at Sources/Core/Vellum/src/Base64.cpp:42   all changes of one line
  Scripts/Mutate.py --list --files '*/Base64.cpp'                only shows what would be changed

All this happens in copies of the tree below Build/mutate, which are kept: the next run builds only what is new there.
A sample draws lines, and one change for each. A change that doesn't compile is replaced by another one. It is noticed
when a test fails, crashes or takes far too long; the tests of the layer that was changed run first.
"""
import argparse
import collections
import concurrent.futures
import fnmatch
import math
import os
import pathlib
import queue
import random
import re
import resource
import shutil
import signal
import subprocess
import sys

Root = pathlib.Path(__file__).resolve().parent.parent
Limits = {resource.RLIMIT_AS: 6 << 30, resource.RLIMIT_FSIZE: 8 << 30, resource.RLIMIT_CORE: 0}  # of a test program
Surroundings = ({"TZ": "Europe/Berlin", "LC_ALL": "de_DE.UTF-8", "VELLUM_TEST_LOCALE": "de_DE.UTF-8"}, {"TZ": "UTC"})

# Literals, and what isn't code. Formatting tells the rest apart: a comparison stands between blanks, the bracket of a
# template doesn't.
Token = re.compile(r"""(?P<number>\b(0[xX][\dA-Fa-f']+|\d[\d']*)([\w.]*)\b)
                     | (?P<char>'(?:\\.|[^'\\\n])') | R"(\w*)\(.*?\)\5" | (?P<text>"(?:\\.|[^"\\\n])*")
                     | //[^\n]*|/\*.*?\*/|^[ \t]*\#(?:\\\n|[^\n])*|\bstatic_assert\(.*?\);""", re.X | re.S | re.M)
Swaps = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
         "&&": ("||",), "||": ("&&",), "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("/",), "<<": (">>",),
         ">>": ("<<",), "&": ("|",), "|": ("&",), "^": ("|",), "+=": ("-=",), "-=": ("+=",), "*=": ("+=",),
         "|=": ("&=",), "&=": ("|=",), "^=": ("|=",), "<<=": (">>=",), ">>=": ("<<=",)}
Words = {"true": "false", "false": "true", "break": "continue", "continue": "break", "++": "--", "--": "++"}
NoStatement = re.compile(r"(?:using|typedef|class|struct|template|friend|namespace|enum|extern|constexpr|static|const|"
                         r"virtual|explicit|inline|public|private|protected|return|break|continue)\b|[~)\]},;]|"
                         r"(?!throw\b|delete\b)[\w:<>,&*\s\[\]]+[\s&*]\w+\s*[=;({\[]|[^;]*= (?:delete|default);")
Control = re.compile(r"\s*(?:(?:else|do|default:|case\b[^;]*?(?<!:):(?!:))(?=\s)|(if|for|while|switch)(?: constexpr)? \()")


class Change(collections.namedtuple("Change", "file line start end new text")):  # of a file that has this text
    def apply(self):
        return self.text[: self.start] + self.new + self.text[self.end :]

    def describe(self):
        text = self.text
        first, last = text.rfind("\n", 0, self.start) + 1, text.find("\n", self.end)
        after = text[first : self.start] + self.new + text[self.end : last]
        return f"{self.file}:{self.line}\n  - {' '.join(text[first:last].split())}\n  + {' '.join(after.split())}"


def mask(text):
    """The text with all blanked that isn't code, and with the insides of literals filled up; and the literals."""
    literals, parts, end = [], [], 0
    for token in Token.finditer(text):
        parts.append(text[end : token.start()])
        end = token.end()
        if token.lastgroup:
            literals.append(token)
        parts.append(token[0] if token["number"] else
                     token[0][0] + "_" * (len(token[0]) - 2) + token[0][0] if token.lastgroup else
                     re.sub(r"[^\n]", " ", token[0]))
    return "".join(parts) + text[end:], literals


def closing(code, start):
    """The place of the bracket that closes the one at `start`."""
    depth = 0
    for at in range(start, len(code)):
        depth += (code[at] in "([{") - (code[at] in ")]}")
        if depth == 0:
            return at
    return len(code)


def near_literals(token):
    if token["number"]:
        isHex = token[2][:2].lower() == "0x"
        value = int(token[2].replace("'", ""), 16 if isHex else 10)
        return [(f"0x{near:X}" if isHex else str(near)) + token[3] for near in (value + 1, value - 1) if near >= 0]
    if token["char"]:
        near = chr(ord(token[0][1]) + 1)
        return [f"'{near}'" if len(token[0]) == 3 and near not in "'\\\x7f" else "'~'"]
    return ['"?' + token[0][1:]]


def statements(code):
    """Where simple statements of functions begin and end, without the conditions that they hang on."""
    start, depth, outer = 0, 0, []  # depth in brackets: what stands in a lambda is a statement of its own
    for at, letter in enumerate(code):
        if letter == ";" and depth == 0 and outer:
            while head := Control.match(code, start, at):
                start = closing(code, head.end() - 1) + 1 if head[1] else head.end()
            yield start + len(code[start:at]) - len(code[start:at].lstrip()), at + 1
        if letter == "{":
            outer.append(depth)
        if letter in "{}" or letter == ";" and depth == 0:
            start = at + 1
            depth = 0 if letter != "}" or not outer else outer.pop()
        depth += (letter in "([") - (letter in ")]")


def find_changes(file):
    text = (Root / file).read_text()
    code, literals = mask(text)
    found = []

    def add(start, end, *replacements):
        line = code.count("\n", 0, start) + 1
        found.extend(Change(file, line, start, end, new, text) for new in replacements if new != text[start:end])

    for token in literals:
        add(*token.span(), *near_literals(token))
    for sign in re.finditer(r"(?<=[\w)\]'\"] )[<>=!&|+\-*/%^]+(?=\s)", code):
        add(*sign.span(), *Swaps.get(sign[0], ()))
    for word in re.finditer(r"\b(?:true|false|break|continue)\b|\+\+|--", code):
        add(*word.span(), Words[word[0]])
    for sign in re.finditer(r"(?<=[(\s\[!])[-!](?=[\w(])", code):
        add(*sign.span(), "")
    for condition in re.finditer(r"\b(if|while) \(", code):
        end = closing(code, condition.end() - 1)
        start = max(condition.end(), code.rfind(";", condition.end(), end) + 1)
        add(start, end, f"!({text[start:end].strip()})", "false", "true" if condition[1] == "if" else text[start:end])
    for result in re.finditer(r"\breturn ([^;{}]+);", code):
        add(*result.span(1), result[1] if result[1] in ("nullptr", "false", "0") else "{}")
    for start, end in statements(code):
        if not NoStatement.match(code, start, end):
            add(start, end, ";")
    declared = {code.count("\n", 0, at.start()) + 1 for at in re.finditer(r"\bvirtual\b|\boperator\b.*;", code)}
    return [change for change in found if change.line not in declared]


def draw(changes, rng):
    """All changes in a random order: first one for each line, then the second ones, and so on."""
    lines = collections.defaultdict(list)
    for change in rng.sample(changes, len(changes)):
        lines[change.file, change.line].append(change)
    rest = list(lines.values())
    while rest:
        rng.shuffle(rest)
        yield from [of_line.pop() for of_line in rest]
        rest = [of_line for of_line in rest if of_line]


def limit_resources(seconds):
    for kind, limit in (Limits | {resource.RLIMIT_CPU: seconds}).items():
        resource.setrlimit(kind, (limit, limit))


def processor_seconds():
    """Of all programs that were started and have ended."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


class Tree:
    """A copy of the sources, and a build of those test programs that are linked with the library's objects."""

    def __init__(self, folder, cores):
        self.folder, self.build, self.cores = folder, folder / "Build", cores
        self.seconds = {}  # by program: what it takes as it stands, of the processor
        self.built = set()  # the files that the programs are made of: other systems have some of their own

    def prepare(self):
        self.copy_sources()
        tools = {"ccache": "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", "ld.lld": "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"}
        self.call("cmake", "-G", "Ninja", "-S", self.folder, "-B", self.build, "-DCMAKE_BUILD_TYPE=Debug",
                  "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DVELLUM_BUILD_EXAMPLES=OFF", "-DVELLUM_BUILD_TOOLS=OFF",
                  "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
                  *[option for tool, option in tools.items() if shutil.which(tool)])
        for path in sorted(self.folder.glob("Tests/*/CMakeLists.txt")):
            for name in re.findall(r"^vellum_test\((\w+)", path.read_text(), re.M):
                program = self.build / "Tests" / path.parent.name / name
                built = self.compile(program, output=None)
                began = processor_seconds()
                if not built or not self.passes(program, 600):
                    sys.exit(f"Mutate: {name} doesn't build or fails as it stands.")
                self.seconds[program] = processor_seconds() - began
        listed = subprocess.run(["ninja", "-C", self.build, "-t", "deps"], check=True, capture_output=True, text=True)
        self.built = {str((self.build / line.strip()).resolve()) for line in listed.stdout.splitlines()}

    def copy_sources(self):
        listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=Root, check=True,
                                capture_output=True, text=True).stdout.split("\0")
        present = {name for name in listed if (Root / name).is_file()}
        for old in self.folder.rglob("*"):
            if old.is_file() and self.build not in old.parents and str(old.relative_to(self.folder)) not in present:
                old.unlink()
        for name in present:
            copy = self.folder / name
            if not copy.exists() or copy.read_bytes() != (Root / name).read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(Root / name, copy)

    def call(self, *command, output=subprocess.DEVNULL):
        environment = dict(os.environ, CCACHE_DIR=str(self.build / "ccache"), CCACHE_BASEDIR="")
        return subprocess.run(command, stdout=output, stderr=output, env=environment).returncode == 0

    def compile(self, program, output=subprocess.DEVNULL):
        return self.call("ninja", "-C", self.build, "-j", str(self.cores), "--quiet", program.name, output=output)

    def passes(self, program, seconds):
        """With that many seconds of the processor; what only waits gets more, since others may use the machine too."""
        scratch = self.build / "scratch"
        for surroundings in Surroundings:
            shutil.rmtree(scratch, ignore_errors=True)
            scratch.mkdir()
            environment = dict(os.environ, TMPDIR=str(scratch), LOCPATH=str(self.build / "Tests/Locales"), **surroundings)
            process = subprocess.Popen([program, "--gtest_fail_fast", "--gtest_brief=1"], cwd=scratch, env=environment,
                                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                       preexec_fn=lambda: limit_resources(math.ceil(seconds)), start_new_session=True)
            try:
                passed = process.wait(60 + 10 * seconds) == 0
            except subprocess.TimeoutExpired:
                passed = False
            try:
                os.killpg(process.pid, signal.SIGKILL)  # and what it has started
            except ProcessLookupError:
                pass
            process.wait()
            if not passed:
                return False
        return True

    def notices(self, change):
        """None if the change doesn't compile, or isn't compiled here."""
        file = self.folder / change.file
        if str(file.resolve()) not in self.built:
            return None
        layer = pathlib.Path(change.file).parts[2]
        try:
            file.write_text(change.apply())
            for program in sorted(self.seconds, key=lambda each: (each.parent.name != layer, self.seconds[each])):
                if not self.compile(program):
                    return None
                if not self.passes(program, 5 + 5 * self.seconds[program]):
                    return True
            return False
        finally:
            file.write_text(change.text)


def test(order, wanted, jobs):
    """How many changes were noticed, and those that weren't."""
    trees = queue.Queue()
    for number in range(jobs):
        trees.put(Tree(Root / "Build/mutate" / str(number + 1), max(1, os.cpu_count() // jobs)))
        trees.queue[-1].prepare()

    def notices(change):
        tree = trees.get()
        try:
            return change, tree.notices(change)
        finally:
            trees.put(tree)

    noticed, survived = 0, []
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        while batch := [change for _, change in zip(range(wanted - noticed - len(survived)), order)]:
            for change, result in pool.map(notices, sorted(batch)):  # a file that stays changed is compiled once less
                noticed += result is True
                if result is False:
                    survived.append(change)
                    print(change.describe(), flush=True)
    return noticed, survived


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=100, help="how many changes are tested")
    parser.add_argument("--seed", type=int, default=random.randrange(10000), help="repeats a sample")
    parser.add_argument("--files", action="append", metavar="GLOB", help="of sources; may be repeated")
    parser.add_argument("--at", metavar="FILE:LINE", help="all changes of one line")
    parser.add_argument("--list", action="store_true", help="show the changes and test nothing")
    parser.add_argument("--jobs", type=int, default=1, help="copies of the tree that are tested at once")
    options = parser.parse_args()

    globs = [options.at.rsplit(":", 1)[0]] if options.at else options.files or ["*"]
    sources = sorted(str(path.relative_to(Root)) for path in (Root / "Sources").rglob("*") if path.suffix in (".h", ".cpp"))
    changes = [change for source in sources if any(fnmatch.fnmatch(source, glob) for glob in globs)
               for change in find_changes(source) if not options.at or options.at == f"{source}:{change.line}"]
    if options.list:
        print("\n".join(change.describe() for change in changes))
        return
    order = draw(changes, random.Random(options.seed))
    noticed, survived = test(order, len(changes) if options.at else options.count, options.jobs)
    print(f"Mutate: {noticed + len(survived)} changes, {noticed} noticed, {len(survived)} survived (seed {options.seed})")


if __name__ == "__main__":
    main()
