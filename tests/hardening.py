#!/usr/bin/env python3
"""Reads from the libraries and the program that they were built with QOR_HARDENING.

usage: hardening.py [--program FILE] [--frame OBJECT] --readelf READELF --objdump OBJDUMP LIBRARY...

OBJECT is an object file with a function whose frame takes many pages.
"""

import argparse
import re
import subprocess
import sys

INSTRUCTION = re.compile(r"^ *([0-9a-f]+):\t(.*)$", re.MULTILINE)
SYMBOL = re.compile(r"^ *\d+: ([0-9a-f]+) +\S+ (\w+) +\w+ +\w+ +(\w+) (\S+)(?: \(\d+\))?$", re.MULTILINE)


class Binary:
    def __init__(self, path, tools):
        self.path, self.tools = path, tools
        self.headers = self.read(tools.readelf, "--program-headers", "--wide")
        self.dynamic = self.read(tools.readelf, "--dynamic", "--wide")
        self.symbols = SYMBOL.findall(self.read(tools.readelf, "--dyn-syms", "--wide"))
        self.needed = {name.split("@")[0] for _, _, section, name in self.symbols if section == "UND"}

    def read(self, *command):
        return subprocess.run([*command, self.path], check=True, capture_output=True, text=True).stdout

    def faults(self):
        """What each file must have, as (whether it has it, what is wrong otherwise)."""
        yield "GNU_RELRO" in self.headers, "no part of its data becomes read-only when it is loaded"
        yield re.search(r"BIND_NOW|FLAGS_1.*NOW", self.dynamic), "its functions are bound when they are first called"
        yield re.search(r"GNU_STACK.* RW +0x", self.headers), "its stack can be executed"
        yield "TEXTREL" not in self.dynamic, "its code is changed when it is loaded"
        yield "__stack_chk_fail" in self.needed, "no function has a stack protector"

    def faults_of_program(self):
        yield re.search(r"FLAGS_1.*PIE", self.dynamic), "it is loaded at a fixed address"
        checked = [name for name in self.needed if re.fullmatch(r"__\w+_chk", name)]
        yield checked, "no function of the C library checks the size of its destination"
        asserts = any("__glibcxx_assert_fail" in name for name in self.needed)
        yield asserts, "containers of the standard library check no index"

    def faults_of_library(self):
        """Each function that callers see is marked as one that may be entered."""
        code = dict(INSTRUCTION.findall(self.read(self.tools.objdump, "-d", "-j", ".text", "--no-show-raw-insn")))
        functions = {address.lstrip("0") for address, kind, section, _ in self.symbols
                     if kind == "FUNC" and section != "UND"}
        marked = [address for address in functions if code.get(address, "").startswith("endbr")]
        print(f"{self.path}: {len(marked)} of {len(functions)} exported functions are marked as entries")
        yield functions and len(marked) == len(functions), "there is no control-flow protection"


def faults_of_frame(path, tools):
    """A large frame is touched page by page, so that it can't reach past the guard page under the stack."""
    code = subprocess.run([tools.objdump, "-d", "--no-show-raw-insn", path], check=True, capture_output=True, text=True)
    yield re.search(r"\bor[lq] +\$0x0,(0x0)?\(%[er]sp\)", code.stdout), "its frame isn't touched page by page"


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    for option in ("--program", "--frame", "--readelf", "--objdump"):
        parser.add_argument(option)
    parser.add_argument("libraries", nargs="+")
    tools = parser.parse_args()

    checks = []
    for path in tools.libraries:
        library = Binary(path, tools)
        checks += [(path, check) for check in (library.faults(), library.faults_of_library())]
    if tools.program:
        program = Binary(tools.program, tools)
        checks += [(tools.program, check) for check in (program.faults(), program.faults_of_program())]
    if tools.frame:
        checks.append((tools.frame, faults_of_frame(tools.frame, tools)))
    problems = [f"{path}: {fault}" for path, check in checks for holds, fault in check if not holds]
    print("\n".join(problems), file=sys.stderr, end="\n" if problems else "")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
