#!/usr/bin/env python3
"""Checks that every include line under src/ keeps to the floors of the house.

check_layering.py              checks the sources, prints "file:line: message", exits 1 on any
check_layering.py --self-test  checks the checks themselves
"""

import re
import sys
import tempfile
from pathlib import Path

# A folder may include from itself and from folders on lower floors; nothing else.
FLOORS = {
    "app": 9,
    "ui": 8,
    "frame": 7,
    "scan": 6,
    "export": 5,
    "lists": 4,
    "tree": 3,
    "format": 3,
    "filters": 3,
    "services": 3,
    "settings": 2,
    "fs": 2,
    "platform": 1,
    "support": 0,
}
QT_FLOOR = FLOORS["ui"]

# The headers of either back end of the seam are its own: everyone else includes platform/*.h.
BACK_ENDS = ("platform/posix/", "platform/win32/")

# Other libraries: the pattern of their headers, and the only folder that may know them.
LIBRARIES = [
    (re.compile(r"unicode/.*"), "platform/posix/"),
    (re.compile(r"zlib\.h"), "export/"),
]

QT_HEADER = re.compile(r"Q[A-Za-z0-9]+(/.*)?")

STANDARD_HEADERS = frozenset(
    """
    algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts
    condition_variable coroutine deque exception execution filesystem format forward_list fstream
    functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits
    list locale map memory memory_resource mutex new numbers numeric optional ostream queue random
    ranges ratio regex scoped_allocator semaphore set shared_mutex source_location span sstream
    stack stdexcept stop_token streambuf string string_view strstream syncstream system_error
    thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
    variant vector version
    cassert cctype cerrno cfenv cfloat cinttypes climits clocale cmath csetjmp csignal cstdarg
    cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype
    """.split()
)

PLATFORM_MACRO = re.compile(
    r"\b(__linux__|__linux|linux|__gnu_linux__|__unix__|__unix|unix|__APPLE__|__MACH__"
    r"|_?WIN32|_?WIN64|__WIN32__|_MSC_VER|__MINGW\w*|__CYGWIN__|__ANDROID__|__\w*BSD__|__GLIBC__"
    r"|_POSIX_\w+|Q_OS_\w+|__has_include)\b"
)

# Comments and raw strings are blanked; other literals are read over, so that a "/*" in a string
# begins no comment.
TOKENS = re.compile(
    r'R"(?P<mark>[^()\\\s]*)\(.*?\)(?P=mark)"'
    r"|//(?:\\\n|[^\n])*|/\*.*?\*/"
    r'|"(?:\\.|[^"\\\n])*"'
    r"|\b[0-9](?:'?[\w.])*"
    r"|'(?:\\.|[^'\\\n])+'",
    re.DOTALL,
)
DIRECTIVE = re.compile(r"[ \t]*#[ \t]*(\w+)[ \t]*(.*)")
INCLUDE = re.compile(r'(?:"(?P<own>[^"]+)"|<(?P<angle>[^>]+)>)')


def folder_of(path):
    """The folder of the house that a path below src/ lies in, or None."""
    folder = path.split("/")[0]
    return folder if "/" in path and folder in FLOORS else None


def directives(text):
    """Yields (line number, name, rest) of every preprocessor line."""
    blank = lambda m: re.sub(r"[^\n]", " ", m[0]) if m[0][0] in "/R" else m[0]
    text = TOKENS.sub(blank, text)
    number = 1
    lines = iter(text.split("\n"))
    for line in lines:
        start = number
        while line.endswith("\\"):
            line = line[:-1] + next(lines, "")
            number += 1
        number += 1
        match = DIRECTIVE.match(line)
        if match:
            yield start, match[1], match[2].strip()


def own_include_fault(path, folder, target, source_root):
    if folder == "ui" and target.endswith(".moc") and "/" not in target:
        return None  # what Qt's compiler makes for the classes of this very file
    other = folder_of(target)
    if other is None:
        return f'"{target}" is no path from src/ into a folder of the house'
    for back_end in BACK_ENDS:
        if target.startswith(back_end) and not path.startswith(back_end):
            return f'"{target}" belongs to one back end of the seam alone'
    if other != folder and FLOORS[other] >= FLOORS[folder]:
        return (f'"{target}" lies on floor {FLOORS[other]}, not below {folder}/ '
                f"on floor {FLOORS[folder]}")
    if not any((source_root / (target + made)).exists() for made in ("", ".in")):
        return f'"{target}" does not exist'
    return None


def angle_include_fault(path, folder, target):
    if target in STANDARD_HEADERS:
        return None
    for pattern, home in LIBRARIES:
        if pattern.fullmatch(target):
            return None if path.startswith(home) else f"<{target}> belongs in {home} alone"
    if QT_HEADER.fullmatch(target):
        below = FLOORS[folder] < QT_FLOOR
        return f"<{target}>: no Qt below ui/" if below else None
    if folder == "platform":
        return None
    return f"<{target}> is no C++ standard header; the operating system stays in platform/"


def faults_of(path, text, source_root):
    """Yields (line, message) for a file, given by its path below src/."""
    folder = folder_of(path)
    if folder is None:
        yield 1, "lies in no folder of the house"
        return
    for line, name, rest in directives(text):
        if name in ("include", "include_next", "import"):
            match = INCLUDE.fullmatch(rest)
            if not match:
                fault = "an include that is no plain path"
            elif match["own"]:
                fault = own_include_fault(path, folder, match["own"], source_root)
            else:
                fault = angle_include_fault(path, folder, match["angle"])
            if fault:
                yield line, fault
        elif name in ("if", "ifdef", "ifndef", "elif", "elifdef", "elifndef"):
            macro = PLATFORM_MACRO.search(rest)
            if macro and folder != "platform":
                yield line, f"{macro[0]}: no platform condition outside platform/"


def check(source_root):
    """Prints every fault below source_root; returns how many files and faults there are."""
    files = faults = 0
    for file in sorted(source_root.rglob("*")):
        name = file.name.removesuffix(".in")
        if not file.is_file() or not re.search(r"\.(h|hh|hpp|inc|inl|c|cc|cpp|cxx)$", name):
            continue
        files += 1
        path = file.relative_to(source_root).as_posix()
        for line, message in faults_of(path, file.read_text(encoding="utf-8"), source_root):
            print(f"{source_root.name}/{path}:{line}: {message}")
            faults += 1
    return files, faults


# (file, text, lines that are at fault)
SELF_TEST = [
    ("lists/A.cpp", '#include "lists/A.h"\n#include "tree/T.h"\n#include <vector>\n', []),
    ("scan/A.cpp", '#include "export/E.h"\n#include "scan/S.h"\n', []),
    ("tree/A.cpp", '#include "scan/S.h"\n', [1]),
    ("scan/A.cpp", '#include "frame/F.h"\n', [1]),
    ("export/A.cpp", '\n  #  include "ui/U.h"\n', [2]),
    ("filters/A.cpp", '#include "format/F.h"\n', [1]),  # neighbours on one floor
    ("support/A.cpp", '#include "Text.h"\n#include "../lists/A.h"\n', [1, 2]),
    ("lists/A.cpp", '#include "lists/Missing.h"\n', [1]),
    ("support/A.cpp", '#include "support/Version.h"\n', []),  # made from Version.h.in
    ("core/A.cpp", "\n", [1]),
    ("stray/A.cpp", "\n", [1]),
    ("ui/A.cpp", "#include <QString>\n#include <QtCore/QString>\n#include \"A.moc\"\n", []),
    ("app/A.cpp", "#include <QApplication>\n#include <unistd.h>\n", [2]),
    ("frame/A.cpp", "#include <QString>\n#include <QtGlobal>\n", [1, 2]),
    ("platform/posix/A.cpp", "#include <QFile>\n", [1]),
    ("platform/posix/A.cpp", "#include <sys/stat.h>\n#include <unicode/ucol.h>\n", []),
    ("platform/win32/A.cpp", "#include <windows.h>\n#include <unicode/ucol.h>\n", [2]),
    ("platform/A.h", '#include "platform/posix/P.h"\n', [1]),
    ("platform/win32/A.cpp", '#include "platform/posix/P.h"\n', [1]),
    ("platform/posix/A.cpp", '#include "platform/posix/P.h"\n', []),
    ("fs/A.cpp", '#include "platform/posix/P.h"\n', [1]),
    ("fs/A.cpp", "#include <unistd.h>\n#include <sys/types.h>\n#include <time.h>\n", [1, 2, 3]),
    ("export/A.cpp", "#include <zlib.h>\n", []),
    ("lists/A.cpp", "#include <zlib.h>\n", [1]),
    ("fs/A.cpp", "#ifdef _WIN32\n#elif defined(__linux__)\n#endif\n", [1, 2]),
    ("fs/A.cpp", "#if defined(A) && \\\n    defined(__unix__)\n#include <unistd.h>\n", [1, 3]),
    ("fs/A.cpp", "#if __has_include(<unistd.h>)\n", [1]),
    ("platform/A.h", "#ifdef _WIN32\n#endif\n", []),
    ("fs/A.cpp", "#ifdef NDEBUG\n#define HEADER <unistd.h>\n#include HEADER\n", [3]),
    ("fs/A.cpp", "// #include <unistd.h>\n/*\n#include <unistd.h>\n*/ #include <fcntl.h>\n", [4]),
    ("fs/A.cpp", 'auto a = "/*";\n#include <fcntl.h>\nauto b = "*/";\n', [2]),
    ("fs/A.cpp", "int a = 1'000; char b = '\"';\n#include <fcntl.h>\nchar c = '\"';\n", [2]),
    ("fs/A.cpp", 'auto a = R"x(\n#include <a.h>\n)";)x";\n#include <fcntl.h>\n', [4]),
]


def self_test():
    """Every snippet must be found at fault in exactly the lines that it names."""
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        root = Path(folder)
        for name in ("lists/A.h", "tree/T.h", "scan/S.h", "frame/F.h", "export/E.h",
                     "ui/U.h", "format/F.h", "platform/posix/P.h", "support/Version.h.in"):
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).touch()
        for path, text, expected in SELF_TEST:
            found = list(faults_of(path, text, root))
            if [line for line, _ in found] != expected:
                print(f"{path}: expected faults in lines {expected}, found {found} in\n{text}")
                failed += 1
    print(f"self-test: {len(SELF_TEST) - failed} of {len(SELF_TEST)} snippets judged as expected")
    return failed


def main(arguments):
    if arguments == ["--self-test"]:
        return 1 if self_test() else 0
    if arguments:
        print(__doc__, file=sys.stderr)
        return 2
    files, faults = check(Path(__file__).resolve().parent.parent / "src")
    print(f"layering: {files} files, {faults} faults")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
