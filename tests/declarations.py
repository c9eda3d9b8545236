"""usage: declarations.py <nm> <library>... -- <clang++> <argument>...

Compares what the public headers declare with what the libraries export, as clang reads the header on its command
line. Each function that isn't defined in a header must be exported, and each exported symbol must belong to a function,
variable or class that a header declares.
"""

import json
import re
import subprocess
import sys

MEMBERS = ("CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl", "CXXConversionDecl", "FunctionDecl")
OF_CLASS = re.compile(r"^(?:vtable|typeinfo|typeinfo name|VTT) for (.*)$")
THUNK = re.compile(r"^(?:virtual|non-virtual) thunk to ")


def global_declarations(command):
    """The declarations at global scope, one by one since the whole is large; namespaces are left out."""
    process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
    lines = []
    for line in process.stdout:
        if line == "    {\n":
            lines = []
        lines.append(line)
        if line.startswith("    }") and '"kind": "NamespaceDecl"' not in lines[2]:
            yield json.loads("".join(lines).rstrip().rstrip(","))
    if process.wait() != 0:
        sys.exit(f"{command[0]} failed")


def is_exported(declaration):
    return any(part["kind"] == "VisibilityAttr" for part in declaration.get("inner", ()))


def is_defined(function):
    return bool(function.get("isImplicit") or function.get("pure") or function.get("explicitlyDeleted")
                or function.get("explicitlyDefaulted")
                or any(part["kind"] in ("CompoundStmt", "CXXTryStmt") for part in function.get("inner", ())))


class Headers:
    """What the headers declare, as mangled names."""

    def __init__(self, command):
        self.functions = set()
        self.defined = set()
        self.variables = set()
        self.classes = set()
        for declaration in global_declarations(command):
            # Anything else at global scope is of the C library.
            if "QOR" in declaration.get("name", "") or is_exported(declaration):
                self.collect(declaration, "")

    def collect(self, declaration, scope):
        kind = declaration["kind"]
        if kind == "CXXRecordDecl" and "name" in declaration:
            self.classes.add(scope + declaration["name"])
            for part in declaration.get("inner", ()):
                self.collect(part, scope + declaration["name"] + "::")
        elif kind in MEMBERS and "mangledName" in declaration:
            self.functions.add(declaration["mangledName"])
            if is_defined(declaration):
                self.defined.add(declaration["mangledName"])
        elif kind == "VarDecl" and "mangledName" in declaration:
            self.variables.add(declaration["mangledName"])


def demangled(symbols):
    symbols = sorted(symbols)
    output = subprocess.run(["c++filt"], input="\n".join(symbols), check=True, stdout=subprocess.PIPE, text=True).stdout
    return dict(zip(symbols, output.splitlines()))


def exported_symbols(nm, libraries):
    symbols = set()
    for library in libraries:
        output = subprocess.run([nm, "-D", "--defined-only", "--format=posix", library], check=True,
                                stdout=subprocess.PIPE, text=True).stdout
        symbols.update(line.split()[0] for line in output.splitlines())
    return symbols


def main(nm, libraries, command):
    exported = exported_symbols(nm, libraries)
    headers = Headers(command)
    wanted = headers.functions - headers.defined
    if not exported or not wanted:
        sys.exit("nothing to compare")

    # A constructor or destructor has several symbols and one name.
    exported_names = demangled(exported)
    available = set(exported_names.values())
    report = [f"declared, neither defined nor exported: {name}"
              for name in demangled(wanted).values() if name not in available]
    known = set(demangled(headers.functions | headers.variables).values())
    for name in available:
        of_class = OF_CLASS.match(name)
        declared = of_class.group(1) in headers.classes if of_class else THUNK.sub("", name) in known
        if not declared:
            report.append(f"exported, but in no public header: {name}")
    print("\n".join(sorted(report)) or f"{len(wanted)} functions declared, {len(exported)} symbols exported")
    return 1 if report else 0


if __name__ == "__main__":
    split = sys.argv.index("--")
    sys.exit(main(sys.argv[1], sys.argv[2:split], sys.argv[split + 1:]))
