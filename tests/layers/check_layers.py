#!/usr/bin/env python3
"""Checks that the sources keep to the layers of the program.

Each file belongs to a unit (a library, or the top: programs, tests, tools), and each unit has a
rank. A file may include the headers of its own unit and of units of a lower rank; a library may
link only libraries of a lower rank. Units of one rank stand side by side: the search screen does
not include the client screen and does not link its library.

    check_layers.py REPO          checks the tree at REPO; exits 1 and lists every fault
    check_layers.py --self-check  plants faults in a temporary tree and checks that each is found
"""

import os
import re
import sys
import tempfile

# (unit, rank, path prefixes). The longest matching prefix decides, so a file can be placed in a
# unit apart from the rest of its folder.
UNITS = [
    ("platform", 0, ["platform/"]),
    ("store", 1, ["store/"]),
    ("session", 2, ["session/"]),
    # Captions and messages are read in the session's language: locale uses session, never the
    # reverse.
    ("locale", 3, ["locale/"]),
    # The rights gate tells a refused user so through the message catalogue.
    ("rights", 4, ["session/Jog."]),
    ("comm", 4, ["comm/"]),
    # The edit model the record screens share.
    ("records", 5, ["records/"]),
    # The address-entry helpers of the client, partner and case screens.
    ("address", 5, ["clients/AddressBlock.", "clients/ComboAutoComplete."]),
    ("search", 6, ["search/"]),
    ("clients", 6, ["clients/"]),
    ("cases", 6, ["cases/"]),
    ("reference", 6, ["reference/"]),
    ("admin", 6, ["admin/"]),
    # The main menu and the login screen are screens like the others.
    ("menu", 6, ["session/Alap.", "session/Login."]),
    ("top", 7, ["app/", "tests/", "bench/", "tools/", "fuzz/"]),
]

# Includes and links that go against the layers and are being removed. Each is reported while it
# is listed but no longer there, so the list cannot outlive the fault.
KNOWN_INCLUDES = set()
KNOWN_LINKS = set()

SOURCE_SUFFIXES = (".cpp", ".h", ".hpp", ".cc", ".cxx")
SKIPPED_DIRS = {".git", "corpus"}
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+/[^>]+)>)')


def unit_of(path):
    """The (unit, rank) of a repository-relative path, or None outside every unit."""
    best = None
    for unit, rank, prefixes in UNITS:
        for prefix in prefixes:
            if path.startswith(prefix) and (best is None or len(prefix) > best[0]):
                best = (len(prefix), unit, rank)
    return best and best[1:]


def top_folders():
    return {p.split("/")[0] for _, _, prefixes in UNITS for p in prefixes}


def source_files(root):
    for folder, dirs, files in os.walk(root):
        rel_folder = os.path.relpath(folder, root)
        dirs[:] = sorted(d for d in dirs if d not in SKIPPED_DIRS
                         and not (rel_folder == "." and d.startswith("build")))
        for name in sorted(files):
            if name.endswith(SOURCE_SUFFIXES) or name == "CMakeLists.txt":
                yield os.path.relpath(os.path.join(folder, name), root).replace(os.sep, "/")


def resolve(root, including, header):
    """The repository-relative path an include names, or None for a header from elsewhere (Qt, the
    generated ui_*.h and version header, the system)."""
    beside = os.path.normpath(os.path.join(os.path.dirname(including), header)).replace(os.sep, "/")
    if not beside.startswith("../") and os.path.isfile(os.path.join(root, beside)):
        return beside
    if header.split("/")[0] in top_folders():
        return os.path.normpath(header).replace(os.sep, "/")
    return None


def may_use(user, used):
    """True when a file of unit `user` may use unit `used`."""
    return used[0] == user[0] or used[1] < user[1]


def check_includes(root, files, known, faults):
    seen = set()
    for path in files:
        if path.endswith("CMakeLists.txt"):
            continue
        own = unit_of(path)
        if own is None:
            faults.append("%s: the folder %s is in no layer (add it to UNITS in %s)"
                          % (path, path.split("/")[0], os.path.basename(__file__)))
            continue
        with open(os.path.join(root, path), encoding="utf-8", errors="replace") as f:
            for number, line in enumerate(f, 1):
                m = INCLUDE.match(line)
                if not m:
                    continue
                target = resolve(root, path, m.group(1) or m.group(2))
                used = target and unit_of(target)
                if not used or may_use(own, used):
                    continue
                if (path, target) in known:
                    seen.add((path, target))
                    continue
                faults.append("%s:%d: includes %s of %s (rank %d) from %s (rank %d)"
                              % (path, number, target, used[0], used[1], own[0], own[1]))
    for path, target in sorted(known - seen):
        faults.append("%s: no longer includes %s; remove it from KNOWN_INCLUDES" % (path, target))


def cmake_commands(text):
    """(command, arguments) of each command of a CMake file, comments and quotes dropped."""
    text = re.sub(r"#[^\n]*", "", text)
    for m in re.finditer(r"\b(\w+)\s*\(([^)]*)\)", text):
        yield m.group(1).lower(), [a.strip('"') for a in m.group(2).split()]


def check_links(root, files, known, faults):
    keywords = {"STATIC", "SHARED", "MODULE", "OBJECT", "INTERFACE", "PUBLIC", "PRIVATE",
                "EXCLUDE_FROM_ALL"}
    units = {}  # library -> the (unit, rank) of each of its sources
    links = []  # (CMakeLists, library, linked library)
    for path in files:
        folder = os.path.dirname(path)
        if not path.endswith("CMakeLists.txt") or (unit_of(folder + "/") or ("top",))[0] == "top":
            continue  # the programs and tests link what they use
        with open(os.path.join(root, path), encoding="utf-8") as f:
            commands = list(cmake_commands(f.read()))
        for command, args in commands:
            if command in ("add_library", "target_sources") and args:
                placed = units.setdefault(args[0], set())
                for source in args[1:]:
                    if source not in keywords and "$" not in source:
                        placed.add(unit_of(os.path.normpath(os.path.join(folder, source))))
                if not placed:  # sources from a glob: the folder's own unit
                    placed.add(unit_of(folder + "/"))
            elif command == "target_link_libraries" and args:
                links += [(path, args[0], lib) for lib in args[1:] if lib not in keywords]
    for library, placed in sorted(units.items()):
        if len(placed) > 1:
            faults.append("%s is built from files of several units: %s"
                          % (library, ", ".join(sorted(u for u, _ in placed))))
    seen = set()
    for path, library, linked in links:
        if library not in units or linked not in units:
            continue
        own = max(units[library], key=lambda u: u[1])
        used = max(units[linked], key=lambda u: u[1])
        if used[1] < own[1]:
            continue
        if (library, linked) in known:
            seen.add((library, linked))
            continue
        faults.append("%s: %s (%s, rank %d) links %s (%s, rank %d)"
                      % (path, library, own[0], own[1], linked, used[0], used[1]))
    for library, linked in sorted(known - seen):
        faults.append("%s no longer links %s; remove it from KNOWN_LINKS" % (library, linked))


def check(root, known_includes=KNOWN_INCLUDES, known_links=KNOWN_LINKS):
    files = list(source_files(root))
    faults = []
    check_includes(root, files, set(known_includes), faults)
    check_links(root, files, set(known_links), faults)
    return faults


def self_check():
    """Builds a small tree that keeps to the layers, checks that it passes, then plants one fault
    of each kind and checks that exactly those are reported."""
    clean = {
        "platform/Db.h": "",
        "platform/Db.cpp": '#include "platform/Db.h"\n#include <QString>\n',
        "store/Prepare.cpp": '#include "platform/Db.h"\n#include "ui_dataeler.h"\n',
        "store/Location.cpp": '#include "session/Session.h"\n',  # listed as known below
        "session/Session.h": '#include "platform/Db.h"\n',
        "session/Session.cpp": '#include "Session.h"\n#include "store/Prepare.h"\n',
        "session/Jog.cpp": '#include "locale/Uzenet.h"\n',
        "session/Alap.cpp": '#include "session/Jog.h"\n#include "session/Login.h"\n',
        "locale/Uzenet.h": "",
        "locale/Uzenet.cpp": '#include "session/Session.h"\n#include <locale>\n',
        "comm/Telhivo.cpp": '#include "locale/Uzenet.h"\n',
        "clients/Ugyfelek.cpp": '#include "comm/Telhivo.h"\n#include "session/Jog.h"\n',
        "search/keres.cpp": '#include "search/keres.h"\n',
        "tests/tst_x.cpp": '#include "clients/Ugyfelek.h"\n#include "search/keres.h"\n',
        "store/CMakeLists.txt": "add_library(causora_store Prepare.cpp Location.cpp)\n"
                                "target_link_libraries(causora_store PUBLIC causora_platform\n"
                                "    PRIVATE causora_session)  # known\n",
        "platform/CMakeLists.txt": "file(GLOB s *.cpp)\nadd_library(causora_platform STATIC ${s})\n",
        "session/CMakeLists.txt": "add_library(causora_session STATIC Session.cpp)\n"
                                  "target_link_libraries(causora_session PUBLIC causora_platform)\n"
                                  "add_library(causora_rights Jog.cpp)\n"
                                  "target_link_libraries(causora_rights PUBLIC causora_locale)\n",
        "locale/CMakeLists.txt": "add_library(causora_locale Uzenet.cpp)\n"
                                 "target_link_libraries(causora_locale PUBLIC causora_session)\n",
    }
    planted = {
        "store/Schema.cpp": ('#include "platform/Db.h"\n#include "locale/Uzenet.h"\n',
                             "store/Schema.cpp:2: includes locale/Uzenet.h"),
        "session/Session.cpp": ('#include "Session.h"\n#include "../locale/Uzenet.h"\n',
                                "session/Session.cpp:2: includes locale/Uzenet.h"),
        "session/Rights.cpp": ('#include "session/Alap.h"\n',
                               "session/Rights.cpp:1: includes session/Alap.h of menu"),
        "session/Jog.cpp": ('#include "locale/Uzenet.h"\n#include "comm/Telhivo.h"\n',
                            "session/Jog.cpp:2: includes comm/Telhivo.h of comm (rank 4) from rights"),
        "clients/Ugyfelek.cpp": ('#include <search/keres.h>\n',
                                 "clients/Ugyfelek.cpp:1: includes search/keres.h of search"),
        "cases/Ugyek.cpp": ("", None),  # the folder of a later screen has its layer already
        "reports/Lista.cpp": ("", "reports/Lista.cpp: the folder reports is in no layer"),
        "locale/CMakeLists.txt": ("add_library(causora_locale Uzenet.cpp)\n"
                                  "target_link_libraries(causora_locale PUBLIC causora_rights)\n",
                                  "locale/CMakeLists.txt: causora_locale (locale, rank 3) links "
                                  "causora_rights (rights, rank 4)"),
        "session/CMakeLists.txt": ("add_library(causora_session STATIC Session.cpp)\n"
                                   "target_sources(causora_session PRIVATE Alap.cpp)\n"
                                   "add_library(causora_rights Jog.cpp)\n",
                                   "causora_session is built from files of several units: menu, "
                                   "session"),
    }
    known_includes = {("store/Location.cpp", "session/Session.h"),
                      ("store/Gone.cpp", "session/Session.h")}
    known_links = {("causora_store", "causora_session")}
    stale = "store/Gone.cpp: no longer includes session/Session.h"

    def build(tree, files):
        for path, text in files.items():
            os.makedirs(os.path.dirname(os.path.join(tree, path)), exist_ok=True)
            with open(os.path.join(tree, path), "w", encoding="utf-8") as f:
                f.write(text)

    failed = []
    with tempfile.TemporaryDirectory() as tree:
        build(tree, clean)
        faults = check(tree, known_includes, known_links)
        if len(faults) != 1 or not faults[0].startswith(stale):
            failed.append("the clean tree should report only the stale exception, got:\n  "
                          + "\n  ".join(faults))
        build(tree, {path: text for path, (text, _) in planted.items()})
        faults = check(tree, known_includes, known_links)
        expected = [e for _, e in planted.values() if e] + [stale]
        for e in expected:
            if not any(f.startswith(e) for f in faults):
                failed.append("not reported: " + e)
        for f in faults:
            if not any(f.startswith(e) for e in expected):
                failed.append("reported in error: " + f)
    for f in failed:
        print("self-check: " + f)
    print("self-check: %d planted faults, %s"
          % (len(expected), "FAILED" if failed else "each found, nothing else"))
    return 1 if failed else 0


def main(argv):
    if argv[1:] == ["--self-check"]:
        return self_check()
    if len(argv) != 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    faults = check(argv[1])
    for fault in faults:
        print(fault)
    print("layers: %d faults" % len(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
