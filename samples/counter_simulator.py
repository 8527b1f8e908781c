#!/usr/bin/env python3
"""Plays a traffic counter on a serial line, so that a download can be tried without one.

Usage: counter_simulator.py [FILE.tdc] [--baud N] [--once]

Makes a pseudo-terminal pair, says which device the program is to open, and sends the
file (the sample corridor) whenever Enter is pressed. With --once, for scripts, it prints
the device alone, waits until a program keeps it open, sends the file once and ends when
the program has closed the device: exit status 0, or 1 when that was too early.

Runs on Linux and macOS; Python 3.8 or later, nothing else.
"""

import argparse
import os
import select
import sys
import time
import tty
from pathlib import Path

BITS_A_CHARACTER = 10  # start bit, 8 data bits, stop bit
STEP = 0.02            # seconds between two pieces of a dump
SETTLED = 0.5          # a device open for so long is not just being tried


class Counter:
    """The counter's end of the line."""

    def __init__(self):
        self.line, device = os.openpty()
        self.device = os.ttyname(device)
        tty.setraw(device)  # or the line would echo what is sent before the program sets it
        os.close(device)
        os.set_blocking(self.line, False)

    def is_plugged_in(self):
        """True while a program has the device open."""
        poll = select.poll()
        poll.register(self.line, select.POLLHUP)
        return not poll.poll(0)

    def wait_until_open(self):
        opened = None
        while opened is None or time.monotonic() - opened < SETTLED:
            if not self.is_plugged_in():
                opened = None
            elif opened is None:
                opened = time.monotonic()
            time.sleep(STEP)

    def wait_until_closed(self):
        while self.is_plugged_in():
            time.sleep(STEP)

    def send(self, data, baud):
        """Sends at a baud rate, 0 for as fast as the line takes it; returns the bytes sent.

        Ends early when the program closes the device.
        """
        sent, start = 0, time.monotonic()
        while sent < len(data) and self.is_plugged_in():
            due = len(data)
            if baud:
                due = min(due, int((time.monotonic() - start) * baud / BITS_A_CHARACTER))
            try:
                sent += os.write(self.line, data[sent:due])
            except BlockingIOError:  # the line is full
                pass
            if baud or sent < due:
                time.sleep(STEP if baud else 0.001)
        return sent


def play_once(counter, data, baud):
    print(counter.device, flush=True)
    counter.wait_until_open()
    sent = counter.send(data, baud)
    if sent < len(data):
        print(f"The device was closed after {sent} of {len(data)} bytes.", file=sys.stderr)
        return 1
    counter.wait_until_closed()
    return 0


def play(counter, path, data, baud):
    print(f"The counter is at {counter.device}. In another terminal, start the program with\n\n"
          f"    VANTOR_COM1={counter.device} vantor\n\n"
          "choose Read TDC Counter, port 1, and press Begin.\n")
    while True:
        print(f"Enter here dumps {path.name}, Ctrl+C ends. ", end="", flush=True)
        if not sys.stdin.readline():
            return
        if not counter.is_plugged_in():
            print("No program has opened the device yet: press Begin first.")
            continue
        print(f"Sending {len(data)} bytes ...", flush=True)
        sent = counter.send(data, baud)
        print("Done." if sent == len(data) else f"The device was closed after {sent} bytes.")


def main():
    sample = Path(__file__).resolve().parent / "Corridor.tdc"
    parser = argparse.ArgumentParser(description="Plays a traffic counter on a serial line.")
    parser.add_argument("file", nargs="?", type=Path, default=sample, metavar="FILE.tdc",
                        help="what is dumped (the sample corridor)")
    parser.add_argument("--baud", type=int, default=9600, metavar="N",
                        help="speed in bits per second (9600); 0: as fast as it goes")
    parser.add_argument("--once", action="store_true",
                        help="print the device alone, dump once when a program has opened it, and end")
    arguments = parser.parse_args()
    try:
        data = arguments.file.read_bytes()
    except OSError as error:
        parser.error(f"{arguments.file}: {error.strerror}")
    counter = Counter()
    try:
        if arguments.once:
            return play_once(counter, data, arguments.baud)
        play(counter, arguments.file, data, arguments.baud)
    except KeyboardInterrupt:
        print()
    return 0


if __name__ == "__main__":
    sys.exit(main())
