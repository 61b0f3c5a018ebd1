#!/usr/bin/env python3
"""make_tree.py KIND FOLDER: fills a new folder with content that is hard on a file system, the same each time.

mixed   20,000 entries: names in many scripts and up to the limit, empty files, links, attributes, deep nesting
flat    50,000 files in one folder
large   a file above 4 GiB, compressible and not, with a hole
worst   what takes the most catalog for the least content: long names, links, attributes of every awkward size
"""
import os
import random
import sys
import unicodedata

LIMIT = 255  # UTF-16 units of a stored name; local file systems take 255 bytes of UTF-8, also when readers hand it back
SCRIPTS = ["abcdefghij XYZ-_.", "äöüßéèñçåøŁşğ", "абвгдежзийЙЁё", "αβγδεζηθΆΈώ", "日本語漢字仮名", "한국어가각힣",
           "עברית", "العربية", "हिन्दीक़", "ไทยกำ", "🍎🚀🎉", "ǅﬁ①Ωµ"]


def name_for(rng, number, longest=False):
    letters = rng.choice(SCRIPTS)
    name = f"{number:x}"
    target = 255 if longest else rng.choice([3, 8, 8, 12, 12, 20, 40, 120])
    while True:
        more = name + rng.choice(letters)
        if len(unicodedata.normalize("NFD", more).encode()) > min(target, LIMIT):
            break
        name = more
    return name.rstrip(". ") or f"{number:x}"


def fill(path, rng, size):
    with open(path, "wb") as file:
        file.write(rng.randbytes(size))


def attributes(path, rng, count, sizes):
    for i in range(count):
        try:
            os.setxattr(path, f"user.org.example.{i}".encode(), rng.randbytes(rng.choice(sizes)))
        except OSError:
            return  # the file system keeps no more on one file


def mixed(root, rng):
    folders = [root]
    made = 0
    deep = root
    for i in range(60):  # deeper than most trees, within the length a path may have
        deep = os.path.join(deep, f"{i}é")
        os.mkdir(deep)
        folders.append(deep)
        made += 1
    while made < 20000:
        parent = rng.choice(folders)
        path = os.path.join(parent, name_for(rng, made, longest=made % 50 == 0))
        if len(path.encode()) > 3800:
            continue
        kind = rng.random()
        if kind < 0.10:
            os.mkdir(path)
            folders.append(path)
        elif kind < 0.16:
            os.symlink(rng.choice(["/Applications", "../" * 3 + "x", "é" * 100, "nowhere"]), path)
        elif kind < 0.40:
            open(path, "wb").close()
        else:
            fill(path, rng, rng.choice([1, 100, 4095, 4096, 4097, 9000, 20000]))
        if kind >= 0.16 and rng.random() < 0.15:
            attributes(path, rng, rng.choice([1, 2, 6]), [0, 1, 50, 900, 3000])
        made += 1


def flat(root, rng):
    for i in range(50000):
        with open(os.path.join(root, name_for(rng, i)), "wb") as file:
            file.write(b"%d" % i)


def large(root, rng):
    block = rng.randbytes(1 << 20)
    with open(os.path.join(root, "large.bin"), "wb") as file:
        for i in range(4200):
            file.write(i.to_bytes(8, "big") + (block[8:] if i % 3 else b"text " * 209713 + b"123"))
        file.seek(300 << 20, os.SEEK_CUR)
        file.write(b"the end")


def worst(root, rng):
    os.mkdir(os.path.join(root, "n"))
    for i in range(6000):
        os.symlink("x" * 200, os.path.join(root, "n", ("%05d" % i) + "z" * 250))
    os.mkdir(os.path.join(root, "a"))
    for i in range(3000):
        path = os.path.join(root, "a", f"{i}")
        open(path, "wb").close()
        attributes(path, rng, 1, [3700, 3790, 3810, 3900])  # about half a node, and just over what a record holds
    for i in range(3000):
        os.makedirs(os.path.join(root, "d", f"{i}" + "y" * 240))


if __name__ == "__main__":
    kind, folder = sys.argv[1:]
    os.mkdir(folder)
    {"mixed": mixed, "flat": flat, "large": large, "worst": worst}[kind](folder, random.Random(kind))
