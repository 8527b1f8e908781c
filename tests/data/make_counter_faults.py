#!/usr/bin/env python3
"""Writes counter_faults.json: a small counter dump, and for each of its bytes how many whole runs stand before the
one that the byte is lost from, and which that is, where the loss can be seen. Shares no code with the program.

    python3 tests/data/make_counter_faults.py > tests/data/counter_faults.json
"""

import datetime
import json
import re

END = ":" * 20
DUMP = (
    "T,001,001,SITE0001,0653,031108,01246\r\n012 001\r\n007 128\r\n003 000\r\n00002\r\n"
    ":,001,002,SITE0001,0714,031108,01246\r\n011 000,255 200\r\n00007\r\n"
    "T,002,001,OAK  AVE,2359,022908,00987\r\n004 000\r\n005 016\r\n00003\r\n" + END + "\r\n"
)


def is_real(date, time):
    try:
        datetime.datetime.strptime(date[4:6] + date[:4] + time, "%y%m%d%H%M")
        return (date + time).isdigit() and len(date) == 6 and len(time) == 4
    except ValueError:
        return False


def is_readable(text):
    """True when every record reads as one up to the end mark, though a figure in it may be another."""
    fields = iter([field.lstrip(" ") for field in re.split(r"\r\n|[,\r\n]", text)])
    while (start := next(fields, "")) != END:
        header = [next(fields, "") for _ in range(6)]
        if start[:1] not in ("T", ":") or not is_real(header[4][:6], header[3][:4]):
            return False
        while len(next(fields, "")) >= 7:
            pass
    return True


starts = [match.start() for match in re.finditer("(?m)^[T:],", DUMP)] + [DUMP.index(END)]


def without(lost):
    """The whole runs and the record that is hurt: the one that the byte was lost from."""
    if is_readable(DUMP[:lost] + DUMP[lost + 1 :]):
        return len(starts) - 1, None
    record = sum(start <= lost for start in starts)
    return record - 1, record


cases = [without(lost) for lost in range(len(DUMP))]
print(json.dumps({"dump": DUMP, "lost": cases}).replace(', "lost"', ',\n "lost"'))
