#!/usr/bin/env python3
"""Sits at the window like a restless user: random input for some minutes, in a display of its own. Between rounds it begins
a new scene, and the window must have as little memory and as few handles as after the first rounds. Not a test: it takes
minutes, and what it finds depends on the seed, which it prints.

  tools/window_hands/random_hands.py PROGRAM FILE... [--minutes 10] [--seed N] [--rounds-of 40]
"""
import argparse
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
WIDTH, HEIGHT = 1000, 700
KEYS = ("f 0 1 2 3 4 5 w a s d q e plus minus Left Right Up Down Tab space Return Escape Delete F1 F10 F12 ctrl+z ctrl+y "
        "ctrl+shift+z ctrl+d ctrl+r ctrl+s ctrl+o ctrl+l ctrl+Tab alt 7 period BackSpace").split()
MOST_GROWTH = 96 << 20  # bytes of resident memory: what an allocator keeps differs from round to round
MOST_HANDLES = 4
WARM_ROUNDS = 3


class Window:
    def __init__(self, program, folder):
        self.folder = folder
        read, write = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", f"{WIDTH}x{HEIGHT}x24"],
                                       pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        os.environ["DISPLAY"] = ":" + os.read(read, 16).decode().strip()
        os.environ["XDG_CONFIG_HOME"] = str(folder / "config")
        self.errors = open(folder / "errors", "wb")
        self.program = subprocess.Popen([program, "view", "--size", f"{WIDTH}x{HEIGHT}"], cwd=folder,
                                        stdout=self.errors, stderr=self.errors)
        found = subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", "Kelvra$"], timeout=60,
                               capture_output=True, text=True, check=True)
        self.id = found.stdout.split()[-1]
        self.hands("windowfocus", self.id)

    def hands(self, *actions):
        subprocess.run(["xdotool", *map(str, actions)], timeout=120, capture_output=True, check=False)

    def key(self, *keys):
        self.hands("key", "--window", self.id, *keys)

    def drop(self, file):
        subprocess.run([sys.executable, HERE / "drop_files.py", self.id, file], capture_output=True, check=False)

    def check_alive(self):
        if self.program.poll() is not None:
            errors = (self.folder / "errors").read_text(errors="replace")[-2000:]
            sys.exit(f"random_hands: the window ended with status {self.program.returncode}\n{errors}")

    def use(self):
        """Memory in bytes and the number of open handles."""
        process = pathlib.Path("/proc") / str(self.program.pid)
        resident = int((process / "statm").read_text().split()[1]) * os.sysconf("SC_PAGE_SIZE")
        return resident, len(list((process / "fd").iterdir()))

    def processor_seconds(self):
        fields = (pathlib.Path("/proc") / str(self.program.pid) / "stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def wait_until_idle(self):
        for _ in range(120):
            before = self.processor_seconds()
            time.sleep(0.5)
            if self.processor_seconds() - before < 0.2:
                return

    def close(self):
        for process in (self.program, self.server):
            process.kill()
            process.wait()


def place(chance):
    return chance.randrange(WIDTH), chance.randrange(HEIGHT)


def act(window, chance, files):
    kind = chance.random()
    if kind < 0.04:
        window.drop(chance.choice(files))
    elif kind < 0.45:
        window.key(*chance.choices(KEYS, k=chance.randint(1, 3)))
    elif kind < 0.75:
        window.hands("mousemove", "--window", window.id, *place(chance), "click", chance.choice([1, 1, 1, 3, 4, 5]))
    else:
        button = chance.choice([1, 1, 2, 3])
        window.hands("mousemove", "--window", window.id, *place(chance), "mousedown", button, "sleep", 0.05,
                     "mousemove", "--window", window.id, *place(chance), "sleep", 0.05, "mouseup", button)


def begin_again(window):
    """Leaves whatever is open, and begins a new scene without saving the old one."""
    window.hands("mouseup", 1, "mouseup", 2, "mouseup", 3)
    for _ in range(2):
        window.key("Escape", "Escape", "Escape")
        window.wait_until_idle()
    window.hands("mousemove", "--window", window.id, WIDTH - 20, HEIGHT - 60)
    window.key("ctrl+n")
    window.wait_until_idle()
    window.key("Right")
    time.sleep(0.5)
    window.key("space")
    window.wait_until_idle()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("files", nargs="+")
    parser.add_argument("--minutes", type=float, default=10)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    parser.add_argument("--rounds-of", type=int, default=40, help="inputs between two looks")
    arguments = parser.parse_args()
    chance = random.Random(arguments.seed)
    files = [str(pathlib.Path(file).resolve()) for file in arguments.files]
    print("seed", arguments.seed, flush=True)
    with tempfile.TemporaryDirectory() as folder:
        window = Window(str(pathlib.Path(arguments.program).resolve()), pathlib.Path(folder))
        try:
            run(window, chance, files, arguments)
        finally:
            window.close()


def run(window, chance, files, arguments):
    end = time.monotonic() + arguments.minutes * 60
    uses = []
    while time.monotonic() < end:
        for _ in range(arguments.rounds_of):
            act(window, chance, files)
            window.check_alive()
        begin_again(window)
        window.check_alive()
        uses.append(window.use())
        print(f"round {len(uses)}: {uses[-1][0] >> 20} MiB, {uses[-1][1]} handles", flush=True)
    warm, later = uses[:WARM_ROUNDS], uses[WARM_ROUNDS:]
    if not later:
        sys.exit("random_hands: too few rounds to compare; give it more minutes")
    # The least of the last rounds: one of them may have ended in a question that kept its scene.
    memory, handles = (min(use[i] for use in later[-3:]) - max(use[i] for use in warm) for i in (0, 1))
    if memory > MOST_GROWTH or handles > MOST_HANDLES:
        sys.exit(f"random_hands: grew by {memory >> 20} MiB and {handles} handles")
    print(f"{len(uses)} rounds of {arguments.rounds_of} inputs: no crash, no growth")


if __name__ == "__main__":
    main()
