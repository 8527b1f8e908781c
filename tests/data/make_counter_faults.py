#!/usr/bin/env python3
"""Writes counter_faults.json: a small counter dump, and for each of its bytes how many whole runs stand before the
fault, and in which record it is, when that byte is lost. Shares no code with the program.

    python3 tests/data/make_counter_faults.py > tests/data/counter_faults.json
"""

import datetime
import json

END = ":" * 20
DUMP = (
    "T,001,001,SITE0001,0653,031108,01246\r\n012 001\r\n007 128\r\n003 000\r\n00002\r\n"
    ":,001,002,SITE0001,0714,031108,01246\r\n011 000,255 200\r\n00007\r\n"
    "T,002,001,OAK  AVE,2359,022908,00987\r\n004 000\r\n005 016\r\n00003\r\n" + END + "\r\n"
)


def fields_of(text):
    fields, field, i = [], "", 0
    while i < len(text):
        if text[i] in ",\r\n":
            if text[i : i + 2] == "\r\n":
                i += 1
            fields.append(field.lstrip(" "))
            field = ""
        else:
            field += text[i]
        i += 1
    return fields + ([field.lstrip(" ")] if field.strip(" ") else [])


def is_real(date, time):
    try:
        datetime.datetime.strptime(date[4:6] + date[:4] + time, "%y%m%d%H%M")
        return (date + time).isdigit() and len(date) == 6 and len(time) == 4
    except ValueError:
        return False


def check(text):
    """Whole runs, and the record of the fault or None."""
    rest = fields_of(text)
    runs = 0
    while True:
        if not rest:
            return runs, runs + 1
        if rest[0] == END:
            return runs, None
        if rest[0][:1] not in ("T", ":") or len(rest) < 8:
            return runs, runs + 1
        time, date = rest[4], rest[5]
        rest = rest[7:]
        while rest and len(rest[0]) >= 7:
            rest.pop(0)
        if not rest or not is_real(date[:6], time[:4]):
            return runs, runs + 1
        rest.pop(0)
        runs += 1


cases = [check(DUMP[:i] + DUMP[i + 1 :]) for i in range(len(DUMP))]
print(json.dumps({"dump": DUMP, "whole": check(DUMP), "lost": cases}).replace(', "lost"', ',\n "lost"'))
