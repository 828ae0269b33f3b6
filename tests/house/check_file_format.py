#!/usr/bin/env python3
"""docs/file_format.md tells every table of a configuration, with its columns in order, their types and the key.

usage: check_file_format.py QRV DOCUMENT

Compared with the file that the program makes.
"""
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile

TYPES = {
    "Integer": ("INT", "BETWEEN -32768 AND 32767"),
    "Boolean": ("INT", "BETWEEN -32768 AND 32767"),
    "Long": ("INT", "BETWEEN -2147483648 AND 2147483647"),
    "Byte": ("INT", "BETWEEN 0 AND 255"),
    "Single": ("REAL", ""),
    "Text": ("TEXT", ""),
    "Memo": ("TEXT", ""),
}
COLUMN = re.compile(r"^\| `(\w+)` \| (\w+)[^|]*\|", re.M)
KEY = re.compile(r"Key: ([\w, ]+)\.")


def told(document):
    """Table by table: the columns with their types, and the key."""
    for section in document.read_text(encoding="utf-8").split("\n## ")[1:]:
        name, _, body = section.partition("\n")
        columns = COLUMN.findall(body)
        if columns:
            key = KEY.search(body)
            yield name, columns, key.group(1).split(", ") if key else []


def made(engine):
    """The same of a file: the columns with the SQL of each."""
    for name, sql in engine.execute("SELECT name, sql FROM sqlite_schema WHERE type = 'table' ORDER BY rowid"):
        columns = re.findall(r"\[(\w+)\] ((?:INT|REAL|TEXT)\b.*?)(?=, \[|\) STRICT)", sql)
        indexes = engine.execute("SELECT sql FROM sqlite_schema WHERE type = 'index' AND tbl_name = ?", [name])
        key = (indexes.fetchone() or [""])[0].rpartition(" (")[2]
        yield name, columns, re.findall(r"\[(\w+)\]", key)


def faults(document, engine):
    pages = list(told(document))
    tables = list(made(engine))
    if [page[0] for page in pages] != [table[0] for table in tables]:
        yield f"the tables are told as {[page[0] for page in pages]}, and they are {[table[0] for table in tables]}"
        return
    for (name, columns, key), (_, real_columns, real_key) in zip(pages, tables):
        if [column for column, _ in columns] != [column for column, _ in real_columns]:
            yield f"{name}: columns {[column for column, _ in real_columns]}"
        if key != real_key:
            yield f"{name}: the key is told as {key}, and it is {real_key}"
        for (column, kind), (_, sql) in zip(columns, real_columns):
            word, limits = TYPES[kind]
            if not sql.startswith(word) or limits not in sql or (not limits and "BETWEEN" in sql):
                yield f"{name}.{column}: told as {kind}, and it is {sql}"


def main():
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "new.qrv"
        subprocess.run([sys.argv[1], "new", path], check=True, capture_output=True)
        engine = sqlite3.connect(path)
        found = list(faults(pathlib.Path(sys.argv[2]), engine))
        engine.close()
    print("\n".join(found) or "every table is told as it is")
    return 1 if found else 0


sys.exit(main())
