#!/usr/bin/env python3
"""Makes the damaged files in tests/data/hostile. What is expected of each stands in expected.txt beside them, which is
kept by hand. The number before a name groups files by the kind of fault. Large files are made by the tests.

usage: make_hostile.py [--check]     --check compares what is there and writes nothing
"""

import os
import sys

import faults_in_entries
import faults_in_nodes
import faults_in_objects
import faults_in_tables
import output


def files():
    for module in (faults_in_tables, faults_in_entries, faults_in_objects, faults_in_nodes):
        yield from module.cases.files()


if __name__ == "__main__":
    sys.exit(output.write(os.path.join(os.path.dirname(os.path.abspath(__file__)), "hostile"), files()))
