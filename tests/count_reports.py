#!/usr/bin/env python3
"""Prints how many tests of the GoogleTest reports in a folder passed and failed."""
import pathlib
import sys
import xml.etree.ElementTree as tree

good = bad = 0
for report in pathlib.Path(sys.argv[1]).glob("*.xml"):
    for case in tree.parse(report).getroot().iter("testcase"):
        if case.get("status") != "run" or case.get("result") == "skipped":
            continue
        if case.find("failure") is None:
            good += 1
        else:
            bad += 1
print(good, bad)
