#!/usr/bin/env python3
"""normalise_zip.py ZIP: rewrites an archive so that equal contents are equal bytes.

Entries are sorted by name, folders left out; all have the time SOURCE_DATE_EPOCH (or 1980) in UTC,
the mode 0644 and nothing about who made them.
"""
import os
import sys
import time
import zipfile

EARLIEST = 315532800  # 1980-01-01: the format knows nothing before


def entry(name, moment):
    info = zipfile.ZipInfo(name, time.gmtime(moment)[:6])
    info.compress_type = zipfile.ZIP_DEFLATED
    info.create_system = 3  # Unix, for the mode
    info.external_attr = 0o100644 << 16
    return info


def main():
    path = sys.argv[1]
    moment = max(EARLIEST, int(os.environ.get("SOURCE_DATE_EPOCH", EARLIEST)))
    rewritten = path + ".normalised"
    with zipfile.ZipFile(path) as source, zipfile.ZipFile(rewritten, "w") as target:
        for name in sorted(source.namelist()):
            if not name.endswith("/"):
                target.writestr(entry(name, moment), source.read(name), compresslevel=9)
    os.replace(rewritten, path)


if __name__ == "__main__":
    main()
