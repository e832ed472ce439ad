"""Differences between two sides that are known and have a reason: a file of lines, each a pattern
for the whole text of a difference, blanks as they come; a line that begins with a space gives the
reason for those above it, one that begins with # is a heading."""

import re


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
