#!/usr/bin/env python3
"""Does what the pages of the documentation say, block by block, in a folder of its own for each page.

    pages.py --root DIR --build DIR --prefix DIR --compiler CXX [--update] PAGE...
    pages.py --machine DIR PAGE...

A block is marked by its language:

  cpp      compiled. A block with functions in it stands for itself; any other is the inside of a
           function that has a decoder, an encoder, a parser and some more at hand (see CONTEXT).
  console  lines behind "$ " are run by bash ("> " goes on with a command); what they print, on
           either output, has to be what follows. A line of "..." stands for any lines.
           "export" holds for all commands that follow.
  machine  the same, but for commands that make a machine ready: they are run with --machine alone.
  bytes    hex with comments behind ";": one SML file or frames, which decode without complaint.
  text     not looked at.

A comment <!-- NAME --> in the line before a block stores the block in the file NAME instead, for the
commands that follow. Commands find the installed program and libraries in PREFIX, a copy of
examples/ and the build as build/release. --update writes what commands print now into the page.

--machine: commands are run in the root folder of another machine, where the repository stands in
/root/libquarn and nothing else is ready: all that a page needs it has to make itself.
"""
import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"(?:^<!-- (?P<file>\S+) -->\n)?^```(?P<language>\S*)\n(?P<body>.*?)^```$",
                   re.M | re.S)
CLONE = "/root/libquarn"
CONTEXT = """
#include "quarn/quarn.h"
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>
"""
FUNCTION = """
[[maybe_unused]] static void Inside(
    [[maybe_unused]] cSMLTdec& decoder, [[maybe_unused]] cSMLTenc& encoder,
    [[maybe_unused]] cSMLP& parser, [[maybe_unused]] vorn::cRecord& payload,
    [[maybe_unused]] const vorn::cRecord& message,
    [[maybe_unused]] std::map<int, vorn::cRecord>& messages, [[maybe_unused]] int& count,
    [[maybe_unused]] const char* bytes, [[maybe_unused]] int size)
{
%s
}
"""


class Page:
    def __init__(self, path, options):
        self.path, self.options = path, options
        self.name = os.path.relpath(path, options.root)
        self.failures, self.includes, self.blocks, self.exports = [], [], [], ""
        self.shell, self.timeout = ["bash", "-c"], 120
        if options.machine:
            self.folder = options.machine + CLONE
            self.environment = {"HOME": "/root", "PATH": "/usr/local/bin:/usr/bin:/usr/sbin:/bin:/sbin",
                                "LC_ALL": "C.UTF-8"}
            self.shell = ["chroot", options.machine, "sh", "-c", f'cd {CLONE} && exec bash -c "$0"']
            self.timeout = 7200
        else:
            self.prepare(options)

    def prepare(self, options):
        self.folder = tempfile.mkdtemp()
        shutil.copytree(os.path.join(options.root, "examples"), os.path.join(self.folder, "examples"))
        os.mkdir(os.path.join(self.folder, "build"))
        os.symlink(options.build, os.path.join(self.folder, "build", "release"))
        prefix = options.prefix
        lib = next(d for d, _, files in os.walk(prefix) if "libquarn.so" in files)
        self.environment = dict(
            os.environ, PATH=f"{prefix}/bin:{os.environ['PATH']}", LD_LIBRARY_PATH=lib,
            PKG_CONFIG_PATH=f"{lib}/pkgconfig", CMAKE_PREFIX_PATH=prefix, CXX=options.compiler,
            LC_ALL="C.UTF-8", HOME=self.folder)
        self.environment.pop("TERM", None)

    def fail(self, line, text):
        self.failures.append(f"{self.name}:{line}: {text}")

    def run(self, command):
        done = subprocess.run([*self.shell, self.exports + command], cwd=self.folder,
                              env=self.environment, text=True, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              timeout=self.timeout, check=False, errors="replace")
        return done.returncode, done.stdout

    def cpp(self, line, body):
        """Puts the block into the page's one program, where the page's own line numbers count."""
        self.includes += re.findall(r"^#include.*\n", body, re.M)
        body = f'#line {line + 1} "{self.name}"\n' + re.sub(r"^#include.*$", "", body, flags=re.M)
        if not re.search(r"^\{", body, re.M):
            body = FUNCTION % body
        self.blocks.append(f"namespace block{line}\n{{\n{body}\n}}\n")

    def compile(self):
        if not self.blocks:
            return
        with open(os.path.join(self.folder, "blocks.cpp"), "w", encoding="utf-8") as out:
            out.write(CONTEXT + "".join(self.includes + self.blocks))
        status, output = self.run("$CXX -std=c++17 -fsyntax-only -Wall -Wextra -Werror "
                                  "$(pkg-config --cflags quarn) blocks.cpp")
        if status:
            self.fail(1, output)

    def bytes(self, line, body):
        text = "".join(re.sub(r";.*", "", l) for l in body.split("\n"))
        with open(os.path.join(self.folder, "bytes.hex"), "w", encoding="ascii") as out:
            out.write(text)
        status, output = self.run("quarn check --input hex bytes.hex")
        if status or "messages" not in output:
            self.fail(line, output)

    def console(self, line, body, succeeds=False):
        """What the block would have to say: its commands with what they print."""
        made, lines, at = "", body.split("\n")[:-1], 0
        while at < len(lines):
            if not lines[at].startswith("$ "):
                self.fail(line + at + 1, "a command is due")
                return body
            start, command = at, lines[at][2:]
            at += 1
            while at < len(lines) and lines[at].startswith("> "):
                command += "\n" + lines[at][2:]
                at += 1
            behind = at
            while at < len(lines) and not lines[at].startswith("$ "):
                at += 1
            expected = "".join(l + "\n" for l in lines[behind:at])
            status, output = self.run(command)
            if status and succeeds:
                self.fail(line + start + 1, f"status {status}\n{output}")
            if command.startswith("export "):
                self.exports += command + "\n"
            if output and not output.endswith("\n"):
                output += "\n"
            pattern = "".join("(?:.*\n)*?" if l == "..." else re.escape(l + "\n")
                              for l in lines[behind:at])
            if not re.fullmatch(pattern, output):
                self.fail(line + start + 1, f"prints\n{output}instead of\n{expected}")
                expected = output
            made += "".join(l + "\n" for l in lines[start:behind]) + expected
        return made

    def check(self):
        with open(self.path, encoding="utf-8") as page:
            text = page.read()
        updated, end = "", 0
        for match in BLOCK.finditer(text):
            language, body = match["language"], match["body"]
            line = text.count("\n", 0, match.start("language")) + 1
            updated += text[end:match.start("body")]
            end = match.end("body")
            if match["file"]:
                path = os.path.join(self.folder, match["file"])
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "w", encoding="utf-8") as out:
                    out.write(body)
            elif language == "console":
                body = self.console(line, body)
            elif language == "machine" and self.options.machine:
                self.console(line, body, succeeds=True)
            elif language in ("cpp", "bytes"):
                getattr(self, language)(line, body)
            elif language not in ("text", "machine"):
                self.fail(line, f"a block of an unknown kind: '{language}'")
            updated += body
        updated += text[end:]
        self.compile()
        self.links(BLOCK.sub("", text))
        if not self.options.machine:
            shutil.rmtree(self.folder)
        if self.options.update and updated != text:
            with open(self.path, "w", encoding="utf-8") as page:
                page.write(updated)

    def links(self, text):
        for target in re.findall(r"\]\((?!https?:)([^)#]+)[^)]*\)", text):
            if not os.path.exists(os.path.join(os.path.dirname(self.path), target)):
                self.fail(1, f"a link to nowhere: {target}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--compiler")
    parser.add_argument("--machine")
    for name in ("--build", "--prefix", "--root"):
        parser.add_argument(name, type=os.path.abspath, default=".")
    parser.add_argument("--update", action="store_true")
    parser.add_argument("pages", nargs="+")
    options = parser.parse_args()
    failures = []
    for path in options.pages:
        page = Page(os.path.abspath(path), options)
        page.check()
        failures += page.failures
    print("\n".join(failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
