#!/usr/bin/env python3
"""Packs a text as the system keeps its manual pages and changelogs: the same text gives the same bytes at any time.

usage: packed.py TEXT PACKED.gz
"""
import gzip
import pathlib
import sys


def write(target, data):
    with open(target, "wb") as file, gzip.GzipFile("", "wb", 9, file, mtime=0) as packed:
        packed.write(data)


if __name__ == "__main__":
    write(sys.argv[2], pathlib.Path(sys.argv[1]).read_bytes())
