"""Installs the program into a temporary folder and compares what goes along with what the program says of itself.

Usage: check_installation.py CMAKE BUILD_FOLDER
"""

import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

CMAKE, BUILD_FOLDER = sys.argv[1:]
MIME = "{http://www.freedesktop.org/standards/shared-mime-info}"

# Stands for the two functions of bash-completion that the completion calls: the words of the line, and file names, of
# which only the pattern is told.
COMPLETE = r"""
_init_completion() { words=("${line[@]}"); cword=$((${#line[@]} - 1)); cur=${line[-1]}; prev=${line[-2]}; }
_filedir() { COMPREPLY+=("FILES $1"); }
source "$1"
shift
line=("$@")
complete -p vantor >&2
_vantor
printf '%s\n' "${COMPREPLY[@]}"
"""


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = Path(folder.name) / "a prefix"
        subprocess.run([CMAKE, "--install", BUILD_FOLDER, "--prefix", cls.prefix], check=True, stdout=subprocess.DEVNULL)
        cls.share = cls.prefix / "share"

    def run_program(self, *arguments):
        program = self.prefix / "bin/vantor"
        return subprocess.run([program, *arguments], capture_output=True, text=True, check=True).stdout

    def subcommands(self, *command):
        """The names that the help of a command lists under "Subcommands:"."""
        _, _, listed = self.run_program(*command, "--help").partition("Subcommands:\n")
        return re.findall(r"^  ([a-z]+) ", listed, re.MULTILINE)

    def commands(self):
        """Each whole command with the options that not all have: ("run", "show"), {"--samples"}."""
        for group in self.subcommands():
            for name in self.subcommands(group):
                options = re.findall(r"^ +(--[a-z-]+)", self.run_program(group, name, "--help"), re.MULTILINE)
                self.assertIn("--json", options)
                yield (group, name), set(options) - {"--json"}

    def complete(self, *words):
        completion = self.share / "bash-completion/completions/vantor"
        result = subprocess.run(["bash", "-euc", COMPLETE, "bash", completion, "vantor", *words], capture_output=True,
                                text=True, check=True)
        return set(result.stdout.split("\n")) - {""}

    def test_man_page_tells_every_command_with_its_options(self):
        page = (self.share / "man/man1/vantor.1").read_text().replace("\\-", "-")
        sections = dict(re.findall(r"^\.SS vantor ([a-z]+ [a-z]+)(.*?)(?=^\.S[SH] )", page, re.MULTILINE | re.DOTALL))
        told = {command: set(re.findall(r"^\.BI? +(--[a-z-]+)|^\.BR +(--[a-z-]+)", text, re.MULTILINE))
                for command, text in sections.items()}
        told = {command: {one or other for one, other in options} for command, options in told.items()}
        self.assertEqual(told, {" ".join(command): options for command, options in self.commands()})

    def test_completion_knows_every_command_with_its_options(self):
        groups = self.subcommands()
        self.assertGreaterEqual(len(groups), 5)
        self.assertEqual(self.complete(""), {*groups, "FILES ld2"})
        for group in groups:
            self.assertEqual(self.complete(group, ""), set(self.subcommands(group)))
        for command, options in self.commands():
            self.assertEqual(self.complete("--json", *command, "-"), options | {"--json", "--help"}, command)

    def test_completion_of_values(self):
        self.assertEqual(self.complete("--theme", "d"), {"dark"})
        self.assertEqual(self.complete("run", "convert", ""), {"FILES rdf"})
        self.assertEqual(self.complete("log", "convert", "a.gdf", "--to", ""), {"FILES -d"})
        self.assertEqual(self.complete("study", "report", "a.ld2", "--output", ""), {"FILES pdf"})
        self.assertEqual(self.complete("study", "bounds", "a.ld2", "--start-dist", ""), set())
        choices = re.search(r"--only TEXT:{([a-z,-]+)}", self.run_program("study", "report", "--help")).group(1)
        self.assertEqual(self.complete("study", "report", "--only", ""), set(choices.split(",")))

    def test_one_version_everywhere(self):
        version = self.run_program("--version").split()[-1]
        metainfo = ElementTree.parse(self.share / "metainfo/example.vantor.Vantor.metainfo.xml")
        self.assertEqual(metainfo.find("releases/release").get("version"), version)
        self.assertIn(f'"Vantor {version}"', (self.share / "man/man1/vantor.1").read_text().splitlines()[0])

    def test_study_opens_from_the_file_manager(self):
        entry = dict(re.findall(r"^(\w+)=(.*)$", (self.share / "applications/vantor.desktop").read_text(), re.MULTILINE))
        self.assertEqual(entry["Exec"], "vantor %f")
        self.assertTrue((self.share / f"icons/hicolor/scalable/apps/{entry['Icon']}.svg").is_file())
        types = ElementTree.parse(self.share / "mime/packages/vantor.xml")
        study = types.find(f"{MIME}mime-type[@type='{entry['MimeType'].rstrip(';')}']")
        self.assertEqual([glob.get("pattern") for glob in study.iter(f"{MIME}glob")], ["*.ld2"])

    def test_manual_lies_where_the_program_looks_for_it(self):
        self.assertEqual((self.share / "vantor/VANTOR.HLP").read_bytes()[:15], b"SQLite format 3")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
