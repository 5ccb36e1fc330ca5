#!/usr/bin/env python3
"""Man pages, completions and the manual name exactly the commands, options and values that the programs' own help
names. Shells that are not installed are left out, and said to be.

    documents.py TRACELYN TRACELYN-CLI
"""
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
PROJECT = HERE.parents[1]
LINUX = PROJECT / "packaging/linux"
COMPLETIONS = LINUX / "completions"

BASH = r"""
. "$1/tracelyn-cli.bash"
eval "COMP_WORDS=(${2% *})"
COMP_WORDS+=("${2##* }")
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
function=$(complete -p "${COMP_WORDS[0]}" | sed 's/.*-F \([^ ]*\).*/\1/')
"$function" "${COMP_WORDS[0]}" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
printf '%s\n' "${COMPREPLY[@]}"
"""
FISH = r"""
source $argv[1]/tracelyn.fish; source $argv[1]/tracelyn-cli.fish
complete -C $argv[2] | string replace -r '\t.*' ''
"""
SHELLS = {
    "bash": ["bash", "--norc", "-c", BASH, "bash"],
    "fish": ["fish", "--no-config", "-c", FISH],
    "zsh": ["zsh", "-f", HERE / "zsh_candidates.zsh"],
}


def help_of(program):
    run = subprocess.run([program, "--help"], check=True, capture_output=True, text=True,
                         env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
    return run.stdout


def options_of_help(text):
    """The options of each command, with the name of what each takes."""
    commands = {}
    for line in text.splitlines():
        if line == "":
            break
        if found := re.match(r"  tracelyn-cli ([a-z]+) ", line):
            options = commands.setdefault(found[1], {}) if found[1] != "help" else {}
        for option, value in re.findall(r"--([a-z]+)(?: ([^\]\s]+))?", line):
            options[option] = value
    return commands


def options_of_page(text):
    """The same of a manual page's source."""
    commands, options = {}, {}
    for line in text.replace("\\-", "-").splitlines():
        if found := re.match(r'\.SS "([a-z]+) ', line):
            options = commands.setdefault(found[1], {})
        elif found := re.match(r'\.BI? --([a-z]+)(?: "? ?([^"]*)"?)?$', line):
            options[found[1]] = found[2] or ""
        elif line.startswith(".SH"):
            options = {}
    return commands


def choices(value):
    """The words that may be written for a value: those in small letters."""
    return {word for word in value.split("|") if re.fullmatch("[a-z]+", word)}


def candidates(shell, line):
    """What a shell offers at the end of a line."""
    run = subprocess.run([*SHELLS[shell], COMPLETIONS, line], check=True, capture_output=True, text=True, timeout=60,
                         stdin=subprocess.DEVNULL,
                         env={"PATH": os.environ["PATH"], "HOME": "/nonexistent", "LC_ALL": "C.UTF-8", "TERM": "dumb"})
    return set(run.stdout.split())


def check(what, found, expected):
    holds = found == expected
    print("ok   " if holds else "FAIL ", what if holds else f"{what}: {found} instead of {expected}", flush=True)
    check.failed += not holds


check.failed = 0


def check_shell(shell, commands):
    asked = {"tracelyn-cli ": {*commands, "help"}, "tracelyn --": {"--help", "--version"}}
    for command, options in commands.items():
        if options:
            asked[f"tracelyn-cli {command} --"] = {f"--{option}" for option in options}
        for option, value in options.items():
            if choices(value):
                asked[f"tracelyn-cli {command} --{option} "] = choices(value)
    # Some shells offer the options of the tool itself beside its commands.
    also = {"-h", "--help", "--version"}
    for line, words in asked.items():
        check(f"{shell} completes '{line}'", candidates(shell, line) - (also - words), words)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    viewer_help, tool_help = map(help_of, sys.argv[1:])
    commands = options_of_help(tool_help)
    check("the help has options", sum(map(len, commands.values())) > 10, True)

    manual = (PROJECT / "docs/manual.md").read_text()
    quoted = re.search(r"^    \$ tracelyn-cli --help\n((?:    .*\n|\n)+)", manual, re.M)[1]
    check("the manual quotes the help", re.sub("^    ", "", quoted, flags=re.M).rstrip(), tool_help.rstrip())
    section = manual.split("## Command-line tool")[1]
    known = {option for options in commands.values() for option in options} | {"help", "version"}
    check("the manual names no other option", set(re.findall(r"--([a-z]+)", section)) - known, set())

    page = (LINUX / "tracelyn-cli.1.in").read_text()
    described = options_of_page(page)
    check("the manual page has the commands", list(described), list(commands))
    for command, options in commands.items():
        check(f"the manual page has the options of {command}", described.get(command), options)
    statuses = re.findall(r"^\.TP\n(\d)$", page.split(".SH EXIT STATUS")[1], re.M)
    codes = re.findall(r"(?:: |, |^ +)(\d) ", tool_help.split("exit code")[1], re.M)
    check("the manual page has the exit codes", statuses, codes)
    viewer_page = (LINUX / "tracelyn.1.in").read_text().replace("\\-", "-")
    check("the manual page of the viewer has its options", set(re.findall(r"\.B --([a-z]+)$", viewer_page, re.M)),
          set(re.findall(r"--([a-z]+)", viewer_help)))

    for shell in SHELLS:
        if shutil.which(shell):
            check_shell(shell, commands)
        else:
            print("     ", f"{shell} is not installed: its completions are not tried")
    return 1 if check.failed else 0


if __name__ == "__main__":
    sys.exit(main())
