#!/usr/bin/env python3
"""Walks the roads of the program while the disk fails, the process is killed, the power goes.

    faults.py calls|power|kills [--cases N] [--seed N] FAULT_ROADS FAULT_SHIM [ROAD...]

calls: every call on the files of a road fails in turn, in every way that such a call can fail; and in another round
the process is killed right after it. power: from the calls of a road, states of the disk are built that a power cut
could leave: what was not synced is there, missing, torn at 512 bytes or out of order.
kills: a process is killed at random moments while it saves; what it had saved must be there.

After each the next start must work, and every file be what it was before the road or what it is after it, whole. What
the program has said to be done must be there. Walking the road again must leave nothing behind.
"""

import os
import random
import shutil
import subprocess
import sys
import tempfile

ENGINES = ("sqlite", "access")
KINDS = {  # what may become of a call
    "open": ("EIO", "EACCES", "ENOSPC", "EINTR", "full", "kill"),
    "look": ("EIO", "EACCES", "EINTR"),
    "write": ("EIO", "ENOSPC", "EINTR", "short", "full", "kill"),
    "reserve": ("EIO", "ENOSPC"),
    "sync": ("EIO", "EINTR", "kill"),
    "truncate": ("EIO", "EINTR", "kill"),
    "rename": ("EIO", "EACCES", "ENOSPC", "kill"),
    "link": ("EIO", "EACCES", "kill"),
    "unlink": ("EIO", "EACCES", "kill"),
    "mkdir": ("EIO", "EACCES", "ENOSPC", "kill"),
    "close": ("EIO", "EINTR", "kill"),
}
# A road on which a state between the old and the new one is meant.
MEANT = {("letterhead", "program/tarvello.mdb:DatiIntestazione"): "empty"}
# Where the backup goes, and where it goes if the settings could not be read.
BACKUP, DEFAULT_BACKUP = "stick/copia.bak:", "program/tarvello.bak:"
# What was being typed when the process ended is meant to be there.
DRAFTS = "state/bozze/"
SECTOR = 512
TIME_LIMIT = 60


class Fault(Exception):
    """Something is not as it must be."""


class Runner:
    def __init__(self, binary, shim, scratch):
        self.binary, self.shim, self.scratch = binary, shim, scratch

    def run(self, *arguments, **faults):
        environment = dict(os.environ, LC_ALL="C.UTF-8", TMPDIR=self.scratch)
        if faults:
            environment["LD_PRELOAD"] = self.shim
            environment.update({"FAULTS_" + name.upper(): str(value) for name, value in faults.items()})
        return subprocess.run([self.binary, *arguments], env=environment, capture_output=True, timeout=TIME_LIMIT,
                              check=False)

    def state(self, home):
        result = self.run("state", home)
        if result.returncode != 0:
            raise Fault(f"the next start ends with {result.returncode}: {result.stdout[-300:]} {result.stderr[-300:]}")
        lines = result.stdout.decode(errors="replace").splitlines()
        return dict(line.split("\t", 1) for line in lines if "\t" in line)


def is_debris(name):
    return any(mark in name for mark in (".parziale", "-journal", "-undo", "-wal", "-shm"))


class Road:
    """One road on one engine: what is there before it and after it, and its calls."""

    def __init__(self, runner, name, engine, base):
        self.runner, self.name, self.engine = runner, name, engine
        self.home = os.path.join(runner.scratch, "home")  # routes in the settings lead here
        self.base = os.path.join(runner.scratch, "base-" + name)
        shutil.copytree(base, self.base)
        if name == "first-start":
            for folder in ("program", "config", "state"):
                shutil.rmtree(os.path.join(self.base, folder), ignore_errors=True)
        self.reset()
        self.old = runner.state(self.home)
        self.reset()
        log = os.path.join(runner.scratch, "log")
        if os.path.exists(log):
            os.remove(log)
        result = runner.run("walk", name, self.home, under=self.home, log=log)
        self.said = result.stdout
        if result.returncode != 0:
            raise Fault(f"{self}: fails by itself: {result.stdout.decode()} {result.stderr.decode()}")
        self.log = parse_log(log)
        self.calls = [entry[1] for entry in self.log if entry[0] == "call"]
        self.new = runner.state(self.home)
        if self.old == self.new and name != "first-start":  # which the look at its beginning is too
            raise Fault(f"{self}: changes nothing")

    def __str__(self):
        return f"{self.name} on {self.engine}"

    def reset(self):
        shutil.rmtree(self.home, ignore_errors=True)
        shutil.copytree(self.base, self.home)

    def check(self, done):
        """@param done  everything must be new, but for settings, whose failures are silent"""
        state = self.runner.state(self.home)
        default_backup = self.name == "backup" and any(name.startswith(DEFAULT_BACKUP) for name in state)
        for name in sorted({*self.old, *self.new, *state}):
            if is_debris(name) or name.startswith(DRAFTS):
                continue
            found = state.get(name)
            allowed = [self.new.get(name.replace(DEFAULT_BACKUP, BACKUP) if default_backup else name)]
            if not done or name.startswith("setting:") or (default_backup and name.startswith(BACKUP)):
                allowed += [self.old.get(name), MEANT.get((self.name, name))]
            if found not in allowed:
                raise Fault(f"{name} is {found!r}, may be {allowed}")

    def check_that_nothing_stays(self):
        result = self.runner.run("walk", self.name, self.home)
        if result.returncode != 0:
            raise Fault(f"walked again it fails: {result.stdout.decode()}")
        left = [name for name in self.runner.state(self.home) if is_debris(name)]
        if left:
            raise Fault(f"left behind: {left}")


def parse_log(path):
    """The entries (kind, path, other, number, bytes); ("call", kind) for each counted call."""
    entries = []
    with open(path, "rb") as log:
        for line in log:
            kind, name, other, offset, size = line.rstrip(b"\n").split(b"\t")
            kind = kind.decode()
            content = log.read(int(size)) if kind in ("write", "say") else b""
            if kind == "call":
                entries.append(("call", name.decode()))
            else:
                entries.append((kind, name.decode(), other.decode(), int(offset), content))
    return entries


def prove_calls(road, few, seed):
    cases = [(at, how) for at, kind in enumerate(road.calls, 1) for how in KINDS.get(kind, ())]
    if few:
        cases = random.Random(seed).sample(cases, min(few, len(cases)))
    faults = 0
    for at, how in cases:
        road.reset()
        try:
            result = road.runner.run("walk", road.name, road.home, under=road.home, at=at, how=how)
            if how != "kill" and result.returncode not in (0, 1):
                raise Fault(f"it ended with {result.returncode}: {result.stderr.decode()[-500:]}")
            road.check(done=result.returncode == 0 and result.stdout == road.said)
            if how in ("kill", "full", "EIO"):
                road.check_that_nothing_stays()
        except (Fault, subprocess.TimeoutExpired) as fault:
            faults += 1
            print(f"FAULT {road}, call {at} ({road.calls[at - 1]}) {how}: {fault}\nit said:\n"
                  f"{result.stdout.decode(errors='replace')}", flush=True)
    return len(cases), faults


class Disk:
    """What is on a disk for sure, and what may be."""

    def __init__(self, base, home):
        self.contents = {}  # by number of the file: what is there for sure
        self.unsynced = {}  # writes and cuts since
        self.names = {}  # as programs see them
        self.sure_names = {}
        self.unsynced_names = []  # (folder, name, number or None)
        for folder, _, files in os.walk(base):
            for file in files:
                path = os.path.join(folder, file)
                with open(path, "rb") as content:
                    number = self.add(content.read())
                self.names[os.path.join(home, os.path.relpath(path, base))] = number
        self.sure_names = dict(self.names)

    def add(self, content=b""):
        number = len(self.contents)
        self.contents[number] = bytearray(content)
        self.unsynced[number] = []
        return number

    def name(self, path, number):
        if number is None:
            self.names.pop(path, None)
        else:
            self.names[path] = number
        self.unsynced_names.append((os.path.dirname(path), path, number))

    def apply(self, entry):
        kind, path, other, offset, content = entry
        number = self.names.get(path)
        if kind == "create":
            self.name(path, self.add())
        elif kind == "write" and number is not None:
            self.unsynced[number].append((offset, content))
        elif kind == "truncate" and number is not None:
            self.unsynced[number].append((offset, None))
        elif kind == "rename":
            self.name(other, number)
            self.name(path, None)
        elif kind == "link":
            self.name(other, number)
        elif kind == "unlink":
            self.name(path, None)
        elif kind == "sync" and number is not None:
            for change in self.unsynced[number]:
                put(self.contents[number], *change)
            self.unsynced[number] = []
        elif kind == "sync":
            kept = []
            for folder, name, what in self.unsynced_names:
                if folder != path:
                    kept.append((folder, name, what))
                else:
                    self.sure_names[name] = what
            self.unsynced_names = kept

    def state(self, chance):
        """The files that a power cut leaves: path and content."""
        names = dict(self.sure_names)
        changes = self.unsynced_names
        if chance.random() < 0.5:
            changes = changes[:chance.randint(0, len(changes))]
        else:
            changes = [change for change in changes if chance.random() < 0.5]
        for _, name, what in changes:
            names[name] = what
        files = {}
        for name, number in names.items():
            if number is not None:
                files[name] = self.content(number, chance)
        return files

    def content(self, number, chance):
        content = bytearray(self.contents[number])
        pending = self.unsynced[number]
        manner = chance.choice(("none", "all", "first", "some", "torn"))
        if manner == "none":
            pending = []
        elif manner == "first":
            pending = pending[:chance.randint(0, len(pending))]
        elif manner == "some":
            pending = [change for change in pending if chance.random() < 0.5]
        for offset, written in pending:
            if manner != "torn" or written is None:
                put(content, offset, written)
                continue
            for at in range(0, len(written), SECTOR):
                if chance.random() < 0.5:
                    put(content, offset + at, written[at:at + SECTOR])
        return content


def put(content, offset, written):
    end = offset if written is None else offset + len(written)
    if len(content) < end:
        content.extend(bytes(end - len(content)))
    if written is None:
        del content[offset:]
    else:
        content[offset:end] = written


def prove_power(road, few, seed):
    chance = random.Random(seed)
    entries = [entry for entry in road.log if entry[0] != "call"]
    wanted = few or 220
    cuts = sorted(chance.randrange(len(entries)) for _ in range(wanted))
    disk = Disk(road.base, road.home)
    said = b""
    done = faults = 0
    for cut in cuts:
        for entry in entries[done:cut + 1]:
            if entry[0] == "say":
                said += entry[4]
            else:
                disk.apply(entry)
        done = cut + 1
        shutil.rmtree(road.home, ignore_errors=True)
        shutil.copytree(road.base, road.home, ignore=lambda folder, names: [
            name for name in names if os.path.isfile(os.path.join(folder, name))])
        for path, content in disk.state(chance).items():
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "wb") as file:
                file.write(content)
            os.chmod(path, 0o600)
        try:
            road.check(done=said == road.said)
            if cut % 10 == 0:
                road.check_that_nothing_stays()
        except (Fault, subprocess.TimeoutExpired) as fault:
            faults += 1
            print(f"FAULT {road}, power cut after {cut} ({entries[cut][:2]}): {fault}\nit had said:\n"
                  f"{said.decode(errors='replace')}", flush=True)
    return wanted, faults


def prove_kills(runner, engine, base, few, seed):
    home = os.path.join(runner.scratch, "kills-" + engine)
    database = os.path.join(home, "stick/altro.mdb")
    shutil.copytree(base, home)
    kills = few or 10000
    result = subprocess.run([runner.binary, "kills", database, str(kills), str(seed)], capture_output=True, check=False)
    if result.returncode != 0:
        raise Fault(f"{engine}: {result.stdout.decode()} {result.stderr.decode()[-500:]}")
    if engine == "access":
        tests = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
        check = subprocess.run([sys.executable, os.path.join(tests, "store/access/access_checker.py"), database,
                                "--before", os.path.join(tests, "data/access/vuoto.mdb")],
                               capture_output=True, check=False)
        if check.returncode != 0:
            raise Fault(f"access_checker.py: {check.stdout.decode()} {check.stderr.decode()[-500:]}")
    print(f"{engine}: {result.stdout.decode().strip()}", flush=True)
    return kills


def main():
    arguments = sys.argv[1:]
    options = {"--cases": 0, "--seed": 4711}  # cases 0: all, or as many as docs/testing.md says
    for name in options:
        if name in arguments:
            at = arguments.index(name)
            options[name] = int(arguments[at + 1])
            del arguments[at:at + 2]
    few, seed = options.values()
    proof, binary, shim = arguments[0], os.path.abspath(arguments[1]), os.path.abspath(arguments[2])
    prove = {"calls": prove_calls, "power": prove_power, "kills": None}[proof]
    faults = tried = 0
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(dir=memory) as scratch:
        runner = Runner(binary, shim, scratch)
        names = arguments[3:] or runner.run("roads").stdout.decode().split()
        for engine in ENGINES:
            # Where the roads are walked, as the settings name it.
            home = os.path.join(scratch, "home")
            shutil.rmtree(home, ignore_errors=True)
            runner.run("prepare", home, engine)
            base = os.path.join(scratch, engine)
            shutil.copytree(home, base)
            if not prove:
                try:
                    tried += prove_kills(runner, engine, base, few, seed)
                except Fault as fault:
                    faults += 1
                    print(f"FAULT {fault}", flush=True)
                continue
            for name in names:
                try:
                    road = Road(runner, name, engine, base)
                    count, found = prove(road, few, seed)
                    print(f"{road}: {len(road.calls)} calls, {count} tried", flush=True)
                    tried += count
                    faults += found
                except Fault as fault:
                    faults += 1
                    print(f"FAULT {fault}", flush=True)
                shutil.rmtree(os.path.join(scratch, "base-" + name), ignore_errors=True)
    print(f"{tried} tried, {faults} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
