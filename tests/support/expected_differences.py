"""Differences between two sides that are known and have a reason: a file of lines, each a pattern
for the whole text of a difference, blanks as they come; a line that begins with a space gives the
reason for those above it, one that begins with # is a heading."""

import pathlib
import re
import sys


class Expected:
    def __init__(self, path):
        self.lines = []
        for text in path.read_text().splitlines():
            if text and not text[0].isspace() and not text.startswith("#"):
                self.lines.append([text, re.compile(r"\s+".join(text.split())), 0])

    def allows(self, text):
        for line in self.lines:
            if line[1].fullmatch(text):
                line[2] += 1
                return True
        return False

    def never_met(self):
        return [text for text, _, count in self.lines if count == 0]


def status_of(path, what, compare):
    """The status of a program that compares a tool with what networks' routers said. Its words are
    the tool, the folder of the networks, and the names of those to compare, or none for all.
    compare gets the tool and a network's folder, and gives how many lines it compared and the text
    of each difference; path has those that are known. Prints the others, and the known ones that
    none of all networks shows."""
    tool, data, names = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3:]
    every = names or sorted(each.name for each in data.iterdir() if (each / "all.pcap").exists())
    expected = Expected(path)
    failed = False
    for name in every:
        count, differences = compare(tool, data / name)
        unexpected = [text for text in differences if not expected.allows(f"{name} {text}")]
        for text in unexpected:
            print(name, text)
        failed |= bool(unexpected)
        print(f"{name}: {count} {what} compared, {len(differences)} differences, "
              f"{len(unexpected)} without a reason")
    for text in [] if names else expected.never_met():
        failed = True
        print(f"never met: {text}")
    return 1 if failed else 0
