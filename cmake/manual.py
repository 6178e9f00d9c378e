#!/usr/bin/env python3
"""Makes the manual page and the bash completion of the program out of what --help says, so that
neither can tell anything else than the program does.

    manual.py man PROGRAM VERSION TEMPLATE > quarn.1
    manual.py bash PROGRAM > quarn
"""
import re
import subprocess
import sys


class Help:
    """The help text of the program or of one of its commands, taken apart."""

    def __init__(self, program, *command):
        run = subprocess.run([program, *command, "--help"], capture_output=True, text=True,
                             check=True)
        lines = run.stdout.rstrip().split("\n")
        column = next(l.index("Print this help") for l in lines if "Print this help" in l)
        usage = next(i for i, l in enumerate(lines) if l.startswith("Usage:"))
        self.description = " ".join(lines[:usage]).strip()
        self.usage = lines[usage][len("Usage: "):]
        self.sections = {}  # name -> [[head, text], ...]
        self.footer = []
        entries = None
        for line in lines[usage + 1:]:
            section = re.fullmatch(r"(Positionals|Options|Subcommands):", line)
            if section:
                entries = self.sections.setdefault(section[1], [])
            elif entries is not None and re.match(r"  \S", line):
                fits = len(line) <= column or line[column - 1] == " "
                head, text = (line[:column], line[column:]) if fits else (line, "")
                entries.append([head.strip(), text.strip()])
            elif entries and line.startswith("   "):
                entries[-1][1] = (entries[-1][1] + " " + line.strip()).strip()
            elif line.strip() or self.footer:
                entries = None
                self.footer.append(line)

    def options(self):
        """Pairs of an option's names and the choices for its value."""
        for head, _ in self.sections.get("Options", []):
            words = head.split()
            choices = words[1].split("|") if len(words) > 1 and "|" in words[1] else []
            yield words[0].split(","), choices

    def commands(self):
        return [head for head, _ in self.sections.get("Subcommands", [])]


def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return re.sub(r"^([.'])", r"\\&\1", text)


def entry(head, text):
    names, _, value = head.partition(" ")
    return f".TP\n\\fB{roff(names)}\\fR {roff(value)}".rstrip() + f"\n{roff(text)}\n"


def footer(lines):
    """Paragraphs as they are; examples, which are indented, line by line."""
    out, example = "", False
    for line in lines:
        if line.startswith(" ") != example:
            example = not example
            out += ".PP\n.RS 4\n.nf\n" if example else ".fi\n.RE\n"
        text = line.strip()
        out += (roff(text) + "\n") if text else ".PP\n"
    return out + (".fi\n.RE\n" if example else "")


def man(program, version, template):
    top = Help(program)
    subs = [(name, Help(program, name)) for name in top.commands()]
    synopsis = ".br\n".join(roff(h.usage) + "\n" for _, h in subs)
    commands = ""
    for name, h in subs:
        commands += f".SS {name}\n{roff(h.description)}.\n"
        for head, text in h.sections.get("Positionals", []) + h.sections.get("Options", []):
            if "--help" not in head:
                commands += entry(head, text)
        commands += ".PP\n" + footer(h.footer)
    options = "".join(entry(*e) for e in top.sections["Options"])
    page = open(template, encoding="utf-8").read()
    for mark, text in (("@VERSION@", version), ("@DESCRIPTION@", roff(top.description)),
                       ("@SYNOPSIS@", synopsis), ("@OPTIONS@", options), ("@COMMANDS@", commands)):
        page = page.replace(mark, text.rstrip("\n"))
    return page


def bash(program):
    top = Help(program)
    helps = [("", top)] + [(name, Help(program, name)) for name in top.commands()]
    values, words = "", ""
    for name, h in helps:
        names = [long for option, _ in h.options() for long in option if long.startswith("--")]
        words += f"    '{name}') words='{' '.join(h.commands() + names)}' ;;\n"
        for option, choices in h.options():
            if choices:
                keys = "|".join(f"{name},{n}" for n in option)
                values += f"    {keys}) words='{' '.join(choices)}' ;;\n"
    return f"""# Completion of quarn for bash: commands, their options and the values that an option has to choose
# from; file names everywhere else.
_quarn() {{
    local current=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD-1]}}
    local command='' word words=''
    for word in "${{COMP_WORDS[@]:1:COMP_CWORD-1}}"; do
        case $word in {"|".join(top.commands())}) command=$word && break ;; esac
    done
    case $command,$previous in
{values}    *) [[ $current != -* && -n $command ]] || case $command in
{words}    esac ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}}
complete -o default -F _quarn quarn
"""


if __name__ == "__main__":
    sys.stdout.write({"man": man, "bash": bash}[sys.argv[1]](*sys.argv[2:]))
