#!/usr/bin/env python3
"""Checks the rules of the house that no compiler knows: which folder may include which, no circular
includes, what only the adapters may call, and texts that have no place in the repository.

    scripts/check_house.py               checks the repository; exit status 1 when something is found
    scripts/check_house.py --self-test   checks the rules themselves on small made-up sources
"""

import os
import posixpath
import re
import sys
from collections import namedtuple
from pathlib import Path

Finding = namedtuple("Finding", "path line rule remedy")

UNDER_STATISTICS = {"plots", "analysis", "core", "core/ports"}
UNDER_CORRIDOR = {"statistics", "map", *UNDER_STATISTICS}
UNDER_REPORTS = {"corridor", *UNDER_CORRIDOR}

# Folder under src -> folders whose headers its files may include, itself aside. None: every folder.
ARROWS = {
    "core/ports": {"core"},  # plain records only: see ports_take_plain_records
    "core": {"core/ports"},
    "core/forms": {"core", "core/ports"},
    "analysis": {"core", "core/ports"},
    "analysis/forms": {"plots/forms", "core/forms", "analysis", *UNDER_STATISTICS},
    "plots": {"analysis", "core", "core/ports"},
    "plots/forms": {"plots", "analysis", "core", "core/ports", "core/forms"},
    "map": {"core", "core/ports"},
    "map/forms": {"map", "core", "core/ports", "core/forms"},
    "statistics": {"map", *UNDER_STATISTICS},
    "corridor": UNDER_CORRIDOR,
    "reports": UNDER_REPORTS,
    "counter": UNDER_STATISTICS,
    "tracks": {"core", "core/ports", "analysis"},
    "gpsobd": {"tracks", *UNDER_REPORTS},
    "editing": UNDER_REPORTS,
    "workspace": {"gpsobd", *UNDER_REPORTS},
    "platform": {"core", "core/ports", "core/forms"},
    "cli": {"reports", "counter", "tracks", "gpsobd", "editing", "workspace", *UNDER_REPORTS, "platform"},
    "app": None,
}
# Screens may include what their folder's rules may, these rules, and what all screens share.
for name in ("statistics", "corridor", "reports", "counter", "gpsobd", "editing", "workspace"):
    ARROWS[f"{name}/forms"] = {name, "plots/forms", "map", "map/forms", "core/forms", *ARROWS[name]}

ARROWS["corridor/forms"] |= {"statistics/forms"}  # its tables

MAX_LINES = 450

# Pattern, what it is, remedy, and the paths (a regular expression) where it is allowed.
BANNED_CODE = [
    (re.compile(pattern), rule, remedy, re.compile(allowed))
    for pattern, rule, remedy, allowed in [
        (r"\bQMessageBox\b", "a message box opened directly", "ask through the MessageBoxes port", r"src/platform/"),
        (
            r"\bQ(?:Save|Temporary)?File\b|\bstd::[oi]?fstream\b|\bfopen\s*\(",
            "a file opened directly",
            "read and write through the FileSystem port",
            r"src/platform/",
        ),
        (
            r"(?<![\w.>])(?:std::)?(?:nearbyint|l{0,2}(?:round|rint))[fl]?\s*\("
            r"|\bstd::(?:nearbyint|l{0,2}(?:round|rint))\b|\bqRound\w*\s*\(",
            "rounding of its own",
            "use the functions of core/Numeric, which round halves to even",
            r"src/core/Numeric\.(?:h|cpp)$",
        ),
        (
            r"\bsystem_clock\b|\bQDateTime::current\w+|\bQ(?:Date::currentDate|Time::currentTime)\b"
            r"|(?<![\w.>])(?:std::)?time\s*\(\s*(?:nullptr|NULL|0)\s*\)|\b(?:gettimeofday|clock_gettime)\s*\(",
            "a call for the current time",
            "ask the Clock port",
            r"src/platform/",
        ),
        (
            r"\bextern\b(?!\s*(?:\"|template\b))|\binstance\s*\(\s*\)",
            "a hidden global",
            "pass what the function needs as a parameter",
            r"(?!)",
        ),
    ]
]

# Put together from halves, so that this file does not find itself.
FOREIGN_TEXTS = [
    (re.compile(pattern), rule, remedy)
    for pattern, rule, remedy in [
        (
            r"\b(?:spec|decisions|design)" + r"\.md\b|\b[Tt]he " + r"specification\b",
            "a document that the repository does not have",
            "say it in the words of this project, or name a page under docs/",
        ),
        (
            r"\bPart " + r"[1-6]\.[0-9]",
            "a chapter that readers do not have",
            "say what holds and why, without the number",
        ),
        (
            r"(?<![\w.])/(?:work|root)" + r"/",
            "a path of one machine",
            "use a path relative to the repository, or a temporary folder",
        ),
    ]
]

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"\n]+)[>"]', re.MULTILINE)
QT_HEADER = re.compile(r"(?:Qt\w+/)?(?:Q[A-Z]\w*|q[a-z]+\.h)$|Qt\w+(?:/|$)")
COMMENT_OR_TEXT = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<end>[^()\s\\]*)\(.*?\)(?P=end)"|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'",  # after a digit it is the separator of 1'000
    re.DOTALL,
)


def line_at(text, offset):
    return text.count("\n", 0, offset) + 1


def code_only(text):
    """The text with comments gone and string literals emptied, line breaks kept."""

    def blank(match):
        literal = match.group()
        breaks = "\n" * literal.count("\n")
        return breaks if literal.startswith("/") else literal[0] + breaks + literal[-1]

    return COMMENT_OR_TEXT.sub(blank, text)


def folder_of(path):
    """'src/counter/forms/x.h' -> 'counter/forms'; a deeper folder counts as the known one above it."""
    parts = path.split("/")[1:-1]
    for length in (2, 1):
        if "/".join(parts[:length]) in ARROWS:
            return "/".join(parts[:length])
    return "/".join(parts)


def include_graph(files):
    """Path -> a list of (line, included name, file of the project or None), one for each include."""
    graph = {path: [] for path in files}
    for path, text in files.items():
        roots = (posixpath.dirname(path), path.split("/")[0], "src")
        for match in INCLUDE.finditer(text):
            places = (posixpath.normpath(posixpath.join(root, match.group(1))) for root in roots)
            target = next((place for place in places if place in files), None)
            graph[path].append((line_at(text, match.start(1)), match.group(1), target))
    return graph


def reachable(path, graph):
    """The project files that a file includes, directly or through others."""
    seen, waiting = set(), [path]
    while waiting:
        for _, _, target in graph[waiting.pop()]:
            if target and target not in seen:
                seen.add(target)
                waiting.append(target)
    return seen


def check_arrows(graph):
    for path in graph:
        own = folder_of(path)
        if own not in ARROWS:
            yield Finding(path, 1, f"src/{own} is no known folder", "see the layout in ARCHITECTURE.md")
            continue
        for line, name, target in graph[path]:
            other = folder_of(target) if target else own
            if other != own and ARROWS[own] is not None and other not in ARROWS[own]:
                if own.endswith("/forms") and other.endswith("/forms"):
                    remedy = "open the other screen through the Screens port"
                else:
                    remedy = "move the shared part down, or reach it through a port"
                yield Finding(path, line, f'src/{own} may not include "{name}" of src/{other}', remedy)


def check_ports_take_plain_records(graph):
    for path in graph:
        if folder_of(path) != "core/ports":
            continue
        for line, name, target in graph[path]:
            if target and folder_of(target) == "core":
                if any(folder_of(beyond) == "core/ports" for beyond in reachable(target, graph)):
                    rule = f'a port includes "{name}", which needs ports itself'
                    yield Finding(path, line, rule, "pass a plain record of core instead")


def check_circles(graph):
    for path in graph:
        for line, name, target in graph[path]:
            if target and (target == path or path in reachable(target, graph)):
                yield Finding(path, line, f'"{name}" leads back to this file', "declare forward, or split the header")


def check_qt(graph):
    for path in graph:
        folder = folder_of(path)
        if folder.endswith("/forms") or folder in ("platform", "app"):
            continue
        for line, name, target in graph[path]:
            if target is None and QT_HEADER.match(name):
                rule = f"<{name}> in a folder without Qt"
                yield Finding(path, line, rule, "use plain C++, or move the file to the forms")


def check_banned_code(files):
    for path in files:
        code = code_only(files[path])
        for pattern, rule, remedy, allowed in BANNED_CODE:
            if allowed.match(path):
                continue
            for match in pattern.finditer(code):
                yield Finding(path, line_at(code, match.start()), f"{rule} ({match.group().strip()})", remedy)


def check_size(files):
    for path, text in files.items():
        lines = text.count("\n")
        if lines > MAX_LINES:
            rule = f"{lines} lines, more than {MAX_LINES}"
            yield Finding(path, MAX_LINES + 1, rule, "look for the second thing in the file")


def check_foreign_texts(files):
    for path, text in files.items():
        if path.endswith(".ui"):
            yield Finding(path, 1, "a form that is drawn, not written", "build the form in code")
        for pattern, rule, remedy in FOREIGN_TEXTS:
            for match in pattern.finditer(text):
                yield Finding(path, line_at(text, match.start()), f"{rule} ({match.group()})", remedy)


def is_cpp(path):
    return path.endswith((".h", ".cpp"))


def findings_in(files):
    """All findings in files given as path -> text, in the order of their places."""
    sources = {path: text for path, text in files.items() if path.startswith("src/") and is_cpp(path)}
    tests = {path: text for path, text in files.items() if path.startswith("tests/") and is_cpp(path)}
    graph = include_graph(sources)
    found = [
        *check_arrows(graph),
        *check_ports_take_plain_records(graph),
        *check_circles(include_graph({**sources, **tests})),
        *check_qt(graph),
        *check_banned_code(sources),
        *check_size({**sources, **tests}),
        *check_foreign_texts(files),
    ]
    return sorted(found)


def read_files(root):
    """Path -> text of every text file of the work tree, but for what building leaves there."""
    files = {}
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(set(folders) - {".git", ".cache", ".idea", ".vscode", "build", "__pycache__"})
        for name in sorted(names):
            data = Path(folder, name).read_bytes()
            if b"\0" not in data:
                files[Path(folder, name).relative_to(root).as_posix()] = data.decode("utf-8", "replace")
    return files


# What the self-test feeds: a title, the files, and the places (path:line) that must be found, no others.
RECORD = {"src/core/Run.h": "struct Run {};\n"}
SELF_TEST = [
    (
        "arrows that are allowed",
        {
            **RECORD,
            "src/core/ports/Clock.h": '#include "core/Run.h"\n',
            "src/core/State.h": '#include "core/ports/Clock.h"\n',
            "src/analysis/Delay.h": '#include "core/State.h"\n',
            "src/counter/Convert.cpp": '#include "Convert.h"\n#include "analysis/Delay.h"\n#include <vector>\n',
            "src/counter/Convert.h": "",
            "src/counter/forms/frmReadTDC.cpp": '#include <QDialog>\n#include "counter/Convert.h"\n',
            "src/platform/QtClock.cpp": '#include <QtCore/QDateTime>\n#include "core/ports/Clock.h"\n',
            "src/cli/Counter.cpp": '#include "counter/Convert.h"\n#include "platform/QtClock.h"\n',
            "src/platform/QtClock.h": "",
            "src/app/main.cpp": '#include "cli/Counter.h"\n#include "counter/forms/frmReadTDC.h"\n',
            "src/cli/Counter.h": "",
            "src/statistics/Interval.h": '#include "plots/Axis.h"\n',
            "src/plots/Axis.h": "",
            "src/reports/Page.h": '#include "statistics/Interval.h"\n',
            "src/reports/forms/frmReportPreview.h": '#include "reports/Page.h"\n#include "plots/forms/PlotView.h"\n',
            "src/plots/forms/PlotView.h": "",
            "src/workspace/forms/frmMain.h": '#include "statistics/Interval.h"\n',
            "src/counter/forms/frmReadTDC.h": "",
        },
        [],
    ),
    (
        "arrows that are not",
        {
            "src/core/A.h": '\n#include "counter/B.h"\n',
            "src/counter/B.h": '#include "workspace/C.h"\n',
            "src/counter/D.cpp": '#include "counter/forms/E.h"\n',
            "src/counter/forms/E.h": '#include "../../editing/forms/F.h"\n',
            "src/editing/forms/F.h": '#include "platform/G.h"\n',
            "src/workspace/C.h": "",
            "src/platform/G.h": '#include <analysis/H.h>\n',
            "src/analysis/H.h": '#include "app/I.h"\n',
            "src/cli/J.cpp": '#include "counter/forms/E.h"\n',
            "src/app/I.h": "",
            "src/misc/K.h": "",
            "src/core/ports/L.h": '#include "analysis/H.h"\n',
            "src/core/forms/M.h": '#include "counter/B.h"\n',
            "src/counter/N.h": '#include "statistics/O.h"\n',
            "src/statistics/O.h": '#include "reports/P.h"\n',
            "src/reports/P.h": "",
            "src/workspace/forms/Q.h": '#include "reports/P.h"\n',
            "src/plots/R.h": '#include "statistics/S.h"\n',
            "src/statistics/S.h": "",
        },
        [
            "src/analysis/H.h:1", "src/cli/J.cpp:1", "src/core/A.h:2", "src/counter/B.h:1", "src/counter/D.cpp:1",
            "src/core/forms/M.h:1", "src/core/ports/L.h:1", "src/counter/forms/E.h:1", "src/editing/forms/F.h:1",
            "src/counter/N.h:1", "src/misc/K.h:1", "src/platform/G.h:1", "src/plots/R.h:1",
            "src/statistics/O.h:1", "src/workspace/forms/Q.h:1",
        ],
    ),
    (
        "a port that includes what needs ports",
        {
            **RECORD,
            "src/core/ports/Clock.h": "",
            "src/core/ports/Screens.h": '#include "core/Run.h"\n#include "core/Context.h"\n',
            "src/core/Context.h": '#include "core/ports/Clock.h"\n',
        },
        ["src/core/ports/Screens.h:2"],
    ),
    (
        "circles, one of them through a third file and one in the tests",
        {
            "src/core/A.h": '#include "B.h"\n',
            "src/core/B.h": '#include "core/C.h"\n',
            "src/core/C.h": '#include "core/A.h"\n',
            "src/core/D.h": '#include "core/A.h"\n',
            "tests/fakes/E.h": '#include "fakes/E.h"\n',
        },
        ["src/core/A.h:1", "src/core/B.h:1", "src/core/C.h:1", "tests/fakes/E.h:1"],
    ),
    (
        "Qt where there is none",
        {
            "src/core/A.h": "#include <QString>\n#include <QtCore/qglobal.h>\n#include <queue>\n",
            "src/cli/B.cpp": "  #  include <QtGlobal>\n",
            "src/core/forms/C.h": "#include <QWidget>\n",
        },
        ["src/cli/B.cpp:1", "src/core/A.h:1", "src/core/A.h:2"],
    ),
    (
        "code that is kept to the adapters",
        {
            "src/editing/forms/A.cpp": "QMessageBox::warning(this);\nQFile file(path);\nQFileInfo fine;\n",
            "src/core/B.cpp": "std::ofstream out;\nauto r = std::round(x);\nlong l = lround(x);\nint i = qRound(x);\n",
            "src/core/C.cpp": "auto t = std::time(nullptr);\nsystem_clock::now();\nQDate::currentDate();\n",
            "src/core/D.h": 'extern int g;\nextern "C" int f();\nstatic State& instance();\n',
            "src/core/Numeric.cpp": "return std::nearbyint(x);\n",
            "src/platform/E.cpp": "QMessageBox::warning(p); QFile f; std::ofstream o; QDateTime::currentDateTime();\n",
        },
        [
            "src/core/B.cpp:1", "src/core/B.cpp:2", "src/core/B.cpp:3", "src/core/B.cpp:4",
            "src/core/C.cpp:1", "src/core/C.cpp:2", "src/core/C.cpp:3", "src/core/D.h:1", "src/core/D.h:3",
            "src/editing/forms/A.cpp:1", "src/editing/forms/A.cpp:2",
        ],
    ),
    (
        "code that only looks alike",
        {
            "src/core/A.cpp": "// not std::round(x)\n/* QFile\n extern */ const char* s = \"QMessageBox // \";\n"
            "auto a = R\"(QFile\")\"; char c = '\"'; int n = 1'000; grid.round(x); around(x); runtime(0); Round16(x);\n"
        },
        [],
    ),
    (
        "code after literals that could hide it",
        {"src/core/A.cpp": "char c = '\"';\nint n = 1'000'000; char d = '\"';\nauto s = \"\\\"//\"; QFile f;\n"},
        ["src/core/A.cpp:3"],
    ),
    (
        "size and drawn forms",
        {
            "src/core/A.cpp": "\n" * MAX_LINES,
            "src/core/forms/C.ui": "<ui/>\n",
            "tests/core/B.cpp": "\n" * (MAX_LINES + 1),
        },
        ["src/core/forms/C.ui:1", f"tests/core/B.cpp:{MAX_LINES + 1}"],
    ),
    (
        "texts that have no place here",
        {
            "README.md": "See spec" + ".md.\nAs the " + "specification says.\nfine: src/work/x, Part 7.1\n",
            "scripts/a.sh": "cd /wo" + "rk/main\n# Part" + " 4.2\nfine: https://example.org/work/\n",
        },
        ["README.md:1", "README.md:2", "scripts/a.sh:1", "scripts/a.sh:2"],
    ),
]


def self_test():
    failures = 0
    for title, files, expected in SELF_TEST:
        places = sorted({f"{found.path}:{found.line}" for found in findings_in(files)})
        if places != sorted(expected):
            failures += 1
            print(f"{title}:\n  expected {sorted(expected)}\n  found    {places}")
    return failures


def main(arguments):
    if arguments == ["--self-test"]:
        return 1 if self_test() else 0
    if arguments:
        print(__doc__, file=sys.stderr)
        return 2
    found = findings_in(read_files(Path(__file__).resolve().parent.parent))
    for place in found:
        print(f"{place.path}:{place.line}: {place.rule}; {place.remedy}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
