"""The programs and modules of a release build are hardened, as binutils reads it from the files."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["LAMINA_BUILD"])
MODULES = BUILD / os.environ["LAMINA_MODULE_FOLDER"]
# The compiler and what it is told to build a program in which each check has to find its fault.
CONTROL_FLAGS = ["-O0", "-no-pie", "-fno-stack-protector", "-U_FORTIFY_SOURCE", "-fcf-protection=none",
                 "-fno-stack-clash-protection", "-mbranch-protection=none",
                 "-Wl,-z,norelro,-z,lazy,-z,execstack,-rpath,/nowhere"]
CONTROL = """
#include <cstdio>
#include <cstring>
int filled(const char* text) { char page[100000]; std::strcpy(page, text); return std::printf("%s", page); }
int main(int, char** argv) { return filled(argv[0]); }
"""
# How a function that may be called by its address begins, and how much of the stack is taken at once at most.
ENTRIES = {"X86-64": [bytes.fromhex("f30f1efa")],                                # endbr64
           "AArch64": [bytes.fromhex(code) for code in ("5f2403d5", "3f2303d5")]}  # bti c, paciasp
PAGE = 4096


def read(*arguments):
    return subprocess.run(arguments, check=True, capture_output=True, text=True, errors="replace",
                          env=dict(os.environ, LC_ALL="C")).stdout


class Binary:
    def __init__(self, path):
        self.path = str(path)
        self.segments = read("readelf", "-lW", path)
        self.dynamic = read("readelf", "-dW", path)
        self.imports = set(re.findall(r"UND (\w+)", read("readelf", "--dyn-syms", "-W", path)))
        self.machine = re.search(r"Machine: +(.*)", read("readelf", "-hW", path))[1]
        self.content = pathlib.Path(path).read_bytes()
        self.loads = [[int(number, 16) for number in load] for load in
                      re.findall(r"^ +LOAD +(0x\w+) (0x\w+) 0x\w+ (0x\w+)", self.segments, re.M)]

    def segment_flags(self, kind):
        return re.findall(rf"^ +{kind} +(?:0x\w+ +)+([RWE ]+?) +0x\w+$", self.segments, re.M)

    def offset(self, address):
        return next(address - start + offset for offset, start, size in self.loads if start <= address < start + size)

    def entries(self):
        """How the functions of this code begin that others, or tables of them, know by name."""
        symbols = read("readelf", "-sW", self.path)
        found = re.findall(r": (\w+) +\d+ FUNC +(?:GLOBAL|WEAK) +\w+ +\d+ (_ZNK?6lamina\w+|lamina\w+Module|main|_Z6filled\w+)$",
                           symbols, re.M)
        places = [self.offset(int(address, 16)) for address, _ in found]
        return {self.content[place:place + 4] for place in places}

    def stack_steps(self):
        code = read("objdump", "-d", "--no-show-raw-insn", self.path)
        steps = [int(step, 16) for step in re.findall(r"\tsub +\$0x(\w+),%rsp", code)]
        return [step for step in steps if step < 1 << 31]  # larger ones are negative: the stack is given back


def faults(binary):
    """What of this is not as it should be."""
    found = []

    def expect(name, is_good):
        if not is_good:
            found.append(name)

    expect("PIE", binary.path.endswith(".so") or re.search(r"Flags:.* PIE", binary.dynamic))
    expect("RELRO", binary.segment_flags("GNU_RELRO"))
    expect("BIND_NOW", re.search(r"BIND_NOW|Flags:.* NOW", binary.dynamic))
    expect("stack", binary.segment_flags("GNU_STACK") == ["RW"])
    expect("writable code", not any("W" in flags and "E" in flags for flags in binary.segment_flags("LOAD")))
    expect("RUNPATH", not re.search(r"\((RUNPATH|RPATH)\)", binary.dynamic))
    expect("stack protector", "__stack_chk_fail" in binary.imports)
    # What is small may have nothing whose size is known and whose use is watched, as some modules have not.
    expect("FORTIFY", binary.path.endswith(".so") or any(name.endswith("_chk") for name in binary.imports))
    if good := ENTRIES.get(binary.machine.split()[-1]):
        entries = binary.entries()
        expect("control flow", entries and entries <= set(good))
    if "X86-64" in binary.machine:
        expect("stack clash", all(step <= PAGE for step in binary.stack_steps()))
    return found


class Hardening(unittest.TestCase):
    def test_each_program_and_module_is_hardened(self):
        files = [BUILD / "bin/lamina", BUILD / "bin/lamina-app", *sorted(MODULES.iterdir())]
        self.assertGreaterEqual(len(files), 5)
        for file in files:
            with self.subTest(file.name):
                self.assertEqual(faults(Binary(file)), [])

    def test_faults_are_found_where_there_are_some(self):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder) / "control.cpp"
            source.write_text(CONTROL)
            flags = [flag for flag in CONTROL_FLAGS if self.compiles(flag, source)]
            read(os.environ["LAMINA_CXX"], *flags, str(source), "-o", f"{folder}/control")
            found = faults(Binary(f"{folder}/control"))
        wanted = ["PIE", "RELRO", "BIND_NOW", "stack", "RUNPATH", "stack protector", "FORTIFY"]
        self.assertEqual([fault for fault in found if fault in wanted], wanted)
        if os.uname().machine == "x86_64":
            self.assertEqual(found[-2:], ["control flow", "stack clash"])

    def compiles(self, flag, source):
        return subprocess.run([os.environ["LAMINA_CXX"], flag, "-fsyntax-only", str(source)],
                              capture_output=True, check=False).returncode == 0


if __name__ == "__main__":
    sys.exit(unittest.main())
