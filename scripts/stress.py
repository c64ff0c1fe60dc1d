#!/usr/bin/env python3
"""Stress and crash runs of the data code, with the checks of what ends up in the file.

Run by scripts/stress. Rounds of 2, 4 and 8 causora-stress workstations share one data folder
and make the saves between them; then one workstation after another is killed at a random
moment and the file is opened again. Every workstation logs each save it tries and each one it
was told is stored; the checks compare the logs with the file through the sqlite3 module and
the sqlite3 tool, so nothing of the program's own code judges its own work.
"""
import argparse
import json
import os
import random
import signal
import sqlite3
import subprocess
import sys
import time


class Ledger:
    """What the workstations' logs say must be, may be, and must not be in the file."""

    def __init__(self):
        self.clients = {}  # ukod -> (name, place, phone): the last confirmed values
        self.cases = {}  # number -> (ukod, note)
        self.deleted_clients = set()
        self.deleted_cases = set()
        self.maybe = []  # saves a killed workstation had started and not seen the end of
        self.tried_names = set()
        self.tried_numbers = set()
        self.saves = 0
        self.problems = []

    def read(self, path, killed):
        pending = None
        with open(path, encoding="utf-8") as f:
            for line in f:
                if not line.endswith("\n"):
                    break  # a line cut by the kill was never confirmed
                fields = line.rstrip("\n").split("\t")
                if fields[0] == "try":
                    if pending is not None:
                        self.problems.append("%s: try without outcome: %s" % (path, pending))
                    pending = fields[1:]
                    if fields[1] == "del":
                        pass
                    elif fields[2] == "client":
                        self.tried_names.add(fields[4])
                    elif fields[1] == "add":
                        self.tried_numbers.add(fields[3])
                    continue
                pending = None
                if fields[0] != "not":
                    self.confirm(fields)
        if pending is not None:
            if killed:
                self.maybe.append(pending)
            else:
                self.problems.append("%s: ended in the middle of a save: %s" % (path, pending))

    def confirm(self, f):
        self.saves += 1
        verb, table = f[0], f[1]
        if table == "client":
            key = int(f[2])
            if verb == "del":
                self.deleted_clients.add(key)
            else:
                self.clients[key] = (f[3], f[4], f[5])
        else:
            if verb == "del":
                self.deleted_cases.add(f[2])
            else:
                self.cases[f[2]] = (int(f[3]), f[4])
                self.deleted_cases.discard(f[2])

    def check(self, db_path):
        """Counts lost, doubled and unconfirmed saves and orphan cases in the file."""
        con = sqlite3.connect("file:%s?mode=ro" % db_path, uri=True)
        try:
            client_rows = con.execute("SELECT ukod, unev1, uhely, utel1 FROM ugyfelek").fetchall()
            case_rows = con.execute("SELECT ugyszam, ugyfelkod, megjegyzes FROM ugyek").fetchall()
            orphans = con.execute(
                "SELECT count(*) FROM ugyek WHERE ugyfelkod IS NOT NULL"
                " AND ugyfelkod NOT IN (SELECT ukod FROM ugyfelek)").fetchone()[0]
        finally:
            con.close()
        clients = {r[0]: (r[1], r[2], r[3]) for r in client_rows}
        cases = {r[0]: (r[1], r[2]) for r in case_rows}

        maybe_gone = {("client", int(m[2])) for m in self.maybe if m[0] == "del" and m[1] == "client"}
        maybe_gone |= {("case", m[2]) for m in self.maybe if m[0] == "del" and m[1] == "case"}
        maybe_values = {(m[1], m[2]): m for m in self.maybe if m[0] == "chg"}
        maybe_added = {m[3] if m[1] == "client" else m[2] for m in self.maybe if m[0] == "add"}
        maybe_added |= {m[3] for m in self.maybe if m[0] == "chg" and m[1] == "client"}
        lost = []

        for key in self.deleted_clients:
            if key in clients:
                lost.append("deleted client %d is back" % key)
        for key, values in self.clients.items():
            if key in self.deleted_clients:
                continue
            if key not in clients:
                if ("client", key) not in maybe_gone:
                    lost.append("client %d %s is missing" % (key, values[0]))
            elif clients[key] != values:
                m = maybe_values.get(("client", str(key)))
                if not m or clients[key] != (m[3], m[4], m[5]):
                    lost.append("client %d holds %s, not %s" % (key, clients[key], values))
        for number in self.deleted_cases:
            if number in cases:
                lost.append("deleted case %s is back" % number)
        for number, values in self.cases.items():
            if number in self.deleted_cases:
                continue
            if number not in cases:
                if ("case", number) not in maybe_gone:
                    lost.append("case %s is missing" % number)
            elif cases[number] != values:
                m = maybe_values.get(("case", number))
                if not m or cases[number] != (int(m[3]), m[4]):
                    lost.append("case %s holds %s, not %s" % (number, cases[number], values))

        # A name or number a workstation tried is in the file at most once, and only where the
        # save was confirmed (or its workstation was killed before it could be told).
        doubled, unconfirmed = [], []
        names = {}
        for key, (name, _, _) in clients.items():
            if name in self.tried_names:
                names.setdefault(name, []).append(key)
        for name, keys in names.items():
            if len(keys) > 1:
                doubled.append("client %s stored %d times" % (name, len(keys)))
            for key in keys:
                confirmed = key in self.clients and self.clients[key][0] == name
                if not confirmed and name not in maybe_added:
                    unconfirmed.append("client %d %s" % (key, name))
        for number in cases:
            if number in self.tried_numbers and number not in self.cases and number not in maybe_added:
                unconfirmed.append("case %s" % number)
        return {"lost": lost, "doubled": doubled, "unconfirmed": unconfirmed, "orphans": orphans}


def integrity(db_path):
    r = subprocess.run(["sqlite3", "-batch", db_path, "PRAGMA integrity_check"],
                       capture_output=True, text=True, timeout=120)
    return (r.stdout + r.stderr).strip()


def add_figures(total, figures):
    for k, v in figures.items():
        total[k] = total.get(k, 0) + v


def run_round(args, db_folder, logs, workers, saves, busy_wait, rng, number):
    """Runs the workstations of one round side by side; returns the round's figures."""
    procs = []
    share = [saves // workers + (1 if i < saves % workers else 0) for i in range(workers)]
    started = time.monotonic()
    for i in range(workers):
        tag = "%s%d" % ("ABCDEFGH"[number], i + 1)
        log = os.path.join(logs, tag + ".log")
        cmd = [args.driver, db_folder, "--tag", tag, "--log", log, "--saves", str(share[i]),
               "--seed", str(rng.randrange(1 << 31))]
        if busy_wait:
            cmd += ["--busy-wait", str(busy_wait)]
        err = open(os.path.join(logs, tag + ".err"), "w")
        procs.append((tag, log, subprocess.Popen(cmd, stdout=subprocess.PIPE, stderr=err, text=True), err))
    figures, failed = {}, []
    for tag, log, p, err in procs:
        out, _ = p.communicate()
        err.close()
        try:
            report = json.loads(out.strip().splitlines()[-1])
            add_figures(figures, report["figures"])
            figures["busy_wait_ms"] = report["busy_wait_ms"]
        except (ValueError, IndexError):
            report = None
        if p.returncode != 0 or report is None:
            failed.append("%s exited %d: %s" % (tag, p.returncode,
                                                open(os.path.join(logs, tag + ".err")).read().strip()))
    figures["workers"] = workers
    figures["seconds"] = round(time.monotonic() - started, 1)
    return figures, [log for _, log, _, _ in procs], failed


def crash_round(args, db_folder, logs, ledger, rng):
    """Kills one writing workstation after another and checks the file after each kill."""
    db_path = os.path.join(db_folder, "causora.mdb")
    journal = db_path + "-journal"
    result = {"kills": 0, "survived": 0, "journal_left": 0, "reopen_failed": 0,
              "saves_confirmed": 0, "failures": []}
    saves_before = ledger.saves
    started = time.monotonic()
    for i in range(args.kills):
        tag = "K%03d" % (i + 1)
        log = os.path.join(logs, tag + ".log")
        err = open(os.path.join(logs, tag + ".err"), "w")
        p = subprocess.Popen([args.driver, db_folder, "--tag", tag, "--log", log, "--saves", "0",
                              "--seed", str(rng.randrange(1 << 31)), "--pause", "0"],
                             stdout=subprocess.DEVNULL, stderr=err)
        time.sleep(rng.uniform(0.05, 0.35))
        if p.poll() is not None:
            err.close()
            result["failures"].append("%s ended by itself with %d" % (tag, p.returncode))
            continue
        os.kill(p.pid, signal.SIGKILL)
        p.wait()
        err.close()
        result["kills"] += 1
        problems = []
        if os.path.exists(journal) and os.path.getsize(journal) > 0:
            result["journal_left"] += 1
        # The next workstation to start opens the file as the program does: it must get in,
        # rolling back whatever the killed one had half written.
        opened = subprocess.run([args.driver, db_folder, "--open-only"], capture_output=True,
                                text=True, timeout=60)
        if opened.returncode != 0:
            result["reopen_failed"] += 1
            problems.append("reopen: " + opened.stderr.strip())
        check = integrity(db_path)
        if check != "ok":
            problems.append("integrity_check: " + check)
        if os.path.exists(log):
            ledger.read(log, killed=True)
        found = ledger.check(db_path)
        for kind in ("lost", "doubled", "unconfirmed"):
            problems += ["%s: %s" % (kind, x) for x in found[kind]]
        if found["orphans"]:
            problems.append("%d cases without their client" % found["orphans"])
        if problems:
            result["failures"].append("%s: %s" % (tag, "; ".join(problems[:5])))
        else:
            result["survived"] += 1
    result["saves_confirmed"] = ledger.saves - saves_before
    result["seconds"] = round(time.monotonic() - started, 1)
    return result


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--driver", required=True)
    ap.add_argument("--prepare", required=True)
    ap.add_argument("--work", required=True)
    ap.add_argument("--out", required=True)
    ap.add_argument("--saves", type=int, default=10000)
    ap.add_argument("--kills", type=int, default=100)
    ap.add_argument("--seed", type=int, default=None)
    args = ap.parse_args()
    seed = args.seed if args.seed is not None else random.randrange(1 << 31)
    rng = random.Random(seed)

    db_folder = os.path.join(args.work, "data")
    logs = os.path.join(args.work, "logs")
    subprocess.run(["rm", "-rf", args.work], check=True)
    os.makedirs(logs)
    subprocess.run([args.prepare, "--demo", db_folder], check=True, stdout=subprocess.DEVNULL)
    db_path = os.path.join(db_folder, "causora.mdb")

    ledger = Ledger()
    rounds, failures = [], []
    plan = [(2, None), (4, None), (8, 100)]
    per_round = [args.saves // len(plan) + (1 if i < args.saves % len(plan) else 0)
                 for i in range(len(plan))]
    for n, ((workers, busy_wait), saves) in enumerate(zip(plan, per_round)):
        print("round %d: %d workstations, %d saves" % (n + 1, workers, saves), flush=True)
        figures, round_logs, failed = run_round(args, db_folder, logs, workers, saves, busy_wait, rng, n)
        for log in round_logs:
            ledger.read(log, killed=False)
        rounds.append(figures)
        failures += failed
    stress_found = ledger.check(db_path)
    stress_integrity = integrity(db_path)

    print("crash round: %d kills" % args.kills, flush=True)
    crash = crash_round(args, db_folder, logs, ledger, rng)
    final = ledger.check(db_path)
    final_integrity = integrity(db_path)

    total = {}
    for r in rounds:
        add_figures(total, {k: v for k, v in r.items()
                            if isinstance(v, int) and k not in ("workers", "busy_wait_ms")})
    busy_unhandled = total.get("busy_unhandled", 0)
    unexpected = total.get("unexpected", 0)
    figures = {
        "seed": seed,
        "saves": total.get("saves", 0),
        "lost": len(final["lost"]),
        "doubled": len(final["doubled"]),
        "unconfirmed_stored": len(final["unconfirmed"]),
        "orphans": final["orphans"],
        "busy_failures": total.get("busy", 0),
        "busy_succeeded_on_retry": total.get("busy_retried", 0),
        "busy_unhandled": busy_unhandled,
        "unexpected": unexpected,
        "integrity_after_rounds": stress_integrity,
        "integrity": final_integrity,
        "crashes": crash["kills"],
        "kills_survived": crash["survived"],
        "kills_leaving_a_journal": crash["journal_left"],
        "reopen_failed": crash["reopen_failed"],
        "crash_saves_confirmed": crash["saves_confirmed"],
        "crash_seconds": crash["seconds"],
        "rounds": rounds,
    }
    problems = failures + ledger.problems + crash["failures"]
    problems += ["lost: " + x for x in final["lost"]] + ["doubled: " + x for x in final["doubled"]]
    problems += ["stored though not confirmed: " + x for x in final["unconfirmed"]]
    if stress_found["lost"] or stress_found["doubled"] or stress_found["unconfirmed"]:
        problems.append("after the rounds: %d lost, %d doubled, %d unconfirmed" % (
            len(stress_found["lost"]), len(stress_found["doubled"]), len(stress_found["unconfirmed"])))
    if final["orphans"]:
        problems.append("%d cases without their client" % final["orphans"])
    if stress_integrity != "ok" or final_integrity != "ok":
        problems.append("integrity_check: %s / %s" % (stress_integrity, final_integrity))
    if busy_unhandled or unexpected:
        problems.append("%d unhandled busy, %d unexpected outcomes" % (busy_unhandled, unexpected))
    if figures["saves"] < args.saves:
        problems.append("only %d of %d saves made" % (figures["saves"], args.saves))
    if crash["survived"] != args.kills:
        problems.append("%d of %d kills survived" % (crash["survived"], args.kills))
    figures["passed"] = not problems
    figures["problems"] = problems[:50]
    with open(args.out, "w") as f:
        json.dump(figures, f, indent=2, ensure_ascii=False)

    print()
    print("%-12s %9s %6s %8s %6s %8s %7s %5s" % ("round", "busy wait", "saves", "seconds", "busy",
                                                  "retried", "in use", "gone"))
    for r in rounds:
        print("%-12s %6s ms %6d %8.1f %6d %8d %7d %5d" % (
            "%d stations" % r["workers"], r.get("busy_wait_ms", "?"), r["saves"], r["seconds"],
            r["busy"], r["busy_retried"], r["in_use"], r["gone"] + r["client_gone"]))
    print()
    for key in ("saves", "lost", "doubled", "unconfirmed_stored", "orphans", "busy_failures",
                "busy_succeeded_on_retry", "busy_unhandled", "unexpected", "crashes",
                "kills_survived", "kills_leaving_a_journal", "reopen_failed",
                "crash_saves_confirmed", "integrity"):
        print("%-26s %s" % (key.replace("_", " "), figures[key]))
    print("seed %d; written to %s" % (seed, args.out))
    if problems:
        print("\nFAILED:", file=sys.stderr)
        for p in problems[:20]:
            print("  " + p, file=sys.stderr)
        return 1
    print("all checks passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
