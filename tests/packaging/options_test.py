"""Manual page, completion and user's guide have the options that --help has: options_test.py ZELVIEWER ROOT.

Compared are the names of all options, what stands for their values, and the values of those that take fixed ones.
"""

import fnmatch
import pathlib
import re
import subprocess
import sys
import unittest

OPTION = re.compile(r"-[a-z]\b|--[a-z][a-z-]*")


def parse_help(text):
    """{option: what stands for its value, or ""} of the output of --help."""
    options = {}
    for line in text.splitlines():
        if entry := re.match(r" {2}(-\S+)((?: \S+)*)(?: {2}|$)", line):
            for name in entry[1].split(","):
                options[name] = entry[2].split()[0] if entry[2] else ""
    return options


def parse_values(text):
    """{option: its values} for options whose description lists them: ": a, b, c." or "which of a,b;"."""
    found = {}
    entries = re.split(r"\n {2}(?=-)", text)
    for entry in entries:
        name = OPTION.match(entry)
        flat = " ".join(entry.split())
        listed = re.search(r": ([a-z0-9]+(?:, [a-z0-9]+){2,})(?:\.|$)|which of ([a-z]+(?:,[a-z]+)+);", flat)
        if name and listed:
            found[name[0]] = set(re.split(r", ?", listed[1] or listed[2]))
    return found


def parse_manual(text):
    """{option: what stands for its value, or ""} of the section OPTIONS of a manual page."""
    options = {}
    section = re.search(r"^\.SH OPTIONS\n(.*?)^\.SH ", text, re.M | re.S)
    for line in re.findall(r"^\.TP\n\.(.*)$", section[1] if section else "", re.M):
        words = line.replace("\\-", "-").replace('"', "").split()[1:]  # without the macro
        values = [word for word in words if not OPTION.match(word) and word != ","]
        for word in words:
            if name := OPTION.match(word):
                options[name[0]] = " ".join(values)
    return options


def parse_completion(text):
    """The options that the completion offers, and those it knows the values of: ({option}, {option: {value}})."""
    offered = {word for words in re.findall(r"compgen -W '(-[^']*)'", text) for word in words.split()}
    values = {
        option: set(words.split())
        for option, words in re.findall(r"(--[a-z-]+)\) COMPREPLY=\(\$\(compgen -W '([^']*)'", text)
    }
    return offered, values


def find_mentions(text):
    """All long options that a text names."""
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*[a-z]", text))


class Parsing(unittest.TestCase):
    """What the comparison rests on."""

    HELP = (
        "Usage: zelviewer [OPTIONS]\n\nOptions:\n  -h,--help                 Print this\n"
        "  --kind NAME               Of which kind:\n                            red, green, blue.\n"
        "                            More of it\n"
        "  --more FILE... ...        Files; one or\n  --windows LIST            With -h: which of xy,xz;\n"
        "                            without it all\n"
    )

    def test_help(self):
        self.assertEqual(
            parse_help(self.HELP),
            {"-h": "", "--help": "", "--kind": "NAME", "--more": "FILE...", "--windows": "LIST"},
        )
        self.assertEqual(parse_values(self.HELP), {"--kind": {"red", "green", "blue"}, "--windows": {"xy", "xz"}})

    def test_manual(self):
        page = (
            '.SH NAME\n.TP\n.B \\-\\-no\n.SH OPTIONS\n.TP\n.BR \\-h ", " \\-\\-help\nText with \\-\\-kind.\n'
            '.TP\n.BI \\-\\-close\\-it " N,N[,N]"\nText\n.SH FILES\n.TP\n.B \\-\\-neither\n'
        )
        self.assertEqual(parse_manual(page), {"-h": "", "--help": "", "--close-it": "N,N[,N]"})

    def test_mentions(self):
        text = "`--one` and (--two-b, --three=x), ---, a--b, \\f--no"
        self.assertEqual(find_mentions(text), {"--one", "--two-b", "--three"})

    def test_completion(self):
        script = "--kind) COMPREPLY=($(compgen -W 'red blue' -- \"$cur\")) ;;\nx=$(compgen -W '-h --help\n  --kind' --)"
        self.assertEqual(parse_completion(script), ({"-h", "--help", "--kind"}, {"--kind": {"red", "blue"}}))


class Options(unittest.TestCase):
    def setUp(self):
        self.help = subprocess.run([viewer, "--help"], capture_output=True, text=True, check=True).stdout

    def test_help_is_read_whole(self):
        options = parse_help(self.help)
        self.assertGreater(len(options), 30)
        self.assertEqual(find_mentions(self.help), {name for name in options if name.startswith("--")})

    def test_manual_has_an_entry_for_each(self):
        self.assertEqual(parse_manual((packaging / "zelviewer.1").read_text()), parse_help(self.help))

    def test_manual_and_guide_name_no_others(self):
        options = {name for name in parse_help(self.help) if name.startswith("--")}
        manual = (packaging / "zelviewer.1").read_text().replace("\\-", "-")
        self.assertEqual(find_mentions(manual), options)
        guide = (packaging.parent / "docs/user-guide.md").read_text()
        self.assertEqual(find_mentions(guide), options)

    def test_tools_run_takes_no_screenshot_for_those_that_exit(self):
        """tools/run looks for options that leave it nothing to show, so that it adds none of its own."""
        entries = re.split(r"\n {2}(?=-)", self.help)
        exiting = {OPTION.match(entry)[0] for entry in entries if re.search(r"\band\s+exit\b", entry)}
        self.assertLessEqual({"-h", "--info", "--screenshot", "--save-film", "--export-meshes"}, exiting)
        tool = (packaging.parent / "tools/run").read_text()
        patterns = re.search(r"^ {4}(-.*)\)\s+needs_window=no", tool, re.M)[1].split(" | ")
        missed = {name for name in exiting if not any(fnmatch.fnmatch(name, pattern) for pattern in patterns)}
        self.assertEqual(missed, set())

    def test_completion_offers_each(self):
        offered, _ = parse_completion((packaging / "zelviewer.bash").read_text())
        self.assertEqual(offered, set(parse_help(self.help)))

    def test_completion_knows_fixed_values(self):
        _, values = parse_completion((packaging / "zelviewer.bash").read_text())
        listed = parse_values(self.help)
        self.assertEqual(set(listed), {"--type", "--stretch", "--part", "--windows"})
        del listed["--windows"]  # a list, which is tried in completion_test.py
        self.assertEqual(values, listed)

    def test_completion_takes_no_value_for_a_flag(self):
        """Options with a value have a case of their own in the script, flags have none."""
        script = (packaging / "zelviewer.bash").read_text()
        cases = {name for line in re.findall(r"^ {4}(--[^)]*)\)", script, re.M) for name in line.split(" | ")}
        self.assertEqual(cases, {name for name, value in parse_help(self.help).items() if value})


if __name__ == "__main__":
    viewer, packaging = sys.argv[1], pathlib.Path(sys.argv[2]) / "packaging"
    unittest.main(argv=sys.argv[:1])
