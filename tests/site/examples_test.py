#!/usr/bin/python3
"""What the documentation shows is so: examples_test.py BUILD.

Of README.md and docs/: each page is in the contents, and each type has its facts; each C and C++ block stands in an example, which other tests compile and run;
each Python block runs, those of a page after each other; each block of nothing but commands runs; each
include is there. The pages' own builder needs more packages, and shows what is run here.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import tomllib
import unittest

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(sys.argv.pop()).resolve()
sys.path.insert(0, str(SOURCE / 'tools/site'))

import model_pages  # noqa: E402
import pieces  # noqa: E402

PAGES = [SOURCE / 'README.md', *sorted((SOURCE / 'docs').rglob('*.md'))]


class Shown(unittest.TestCase):
    pages = [(page, list(pieces.fenced(page.read_text()))) for page in PAGES]

    def test_c_and_cpp_stand_in_an_example(self):
        def without_margin(text):
            return re.sub(r'^ +', '', text, flags=re.M)

        programs = [without_margin(path.read_text()) for suffix in ('c', 'cpp')
                    for path in (SOURCE / 'examples').glob('*.' + suffix)]
        blocks = [(page, '\n'.join(lines)) for page, blocks in self.pages
                  for language, lines in blocks if language in ('c', 'cpp')]
        for page, text in blocks:
            with self.subTest(page=page.name):
                self.assertTrue(any(without_margin(text) in program for program in programs), text)
        self.assertGreater(len(blocks), 2)

    def test_includes_are_there(self):
        includes = [(page, words.split()) for page, _ in self.pages
                    for words in re.findall(r'<!-- include: (.+?) -->', page.read_text())]
        for page, words in includes:
            with self.subTest(page=page.name, words=words):
                self.assertGreater(len(pieces.included(words, page)), 50)
        self.assertGreater(len(includes), 5)

    def test_every_field_and_page_has_its_place(self):
        model = json.loads((SOURCE / 'docs/model.json').read_text())
        facts = model_pages.Facts(SOURCE / 'tools/site/fields.toml', model)  # exits where they differ
        for structure in model['structures']:
            for field in structure['fields']:
                self.assertTrue(all(facts.of(structure['name'], field['name'])))
        contents = tomllib.loads((SOURCE / 'tools/site/contents.toml').read_text())
        listed = {page for part in contents['part'] for page in part['pages'] if page.endswith('.md')}
        self.assertEqual(listed, {str(page.relative_to(SOURCE / 'docs')) for page in PAGES[1:]})

    def test_fields_are_filled_by_whom_the_pages_say(self):
        model = json.loads((SOURCE / 'docs/model.json').read_text())
        facts = model_pages.Facts(SOURCE / 'tools/site/fields.toml', model)
        for who, source in (('capture', 'examples/data/campus/all.pcap'),
                            ('answers', 'examples/data/campus/r1')):
            with tempfile.TemporaryDirectory() as folder:
                runner = pieces.runner(pathlib.Path(folder), SOURCE, BUILD)
                script = SOURCE / 'tests/site/filled_fields.py'
                filled = runner.said(f"'{sys.executable}' '{script}' {who} {source}", script)
            self.assertGreater(len(filled), 20)
            for field in filled:
                with self.subTest(field=field, who=who):
                    self.assertIn(model_pages.WHO[who], facts.of(*field.split('.'))[1])

    def test_python_and_commands_run(self):
        commands = programs = 0
        for page, blocks in self.pages:
            python = '\n'.join('\n'.join(lines) for language, lines in blocks
                               if language == 'python')
            wanted = [command for language, lines in blocks if not language
                      for command in pieces.commands_of(lines)]
            with self.subTest(page=page.name), tempfile.TemporaryDirectory() as folder:
                runner = pieces.runner(pathlib.Path(folder), SOURCE, BUILD)
                if python:
                    programs += 1
                    done = subprocess.run([sys.executable, '-c', python], cwd=folder, text=True,
                                          env=runner.environment, capture_output=True, check=False)
                    self.assertEqual(done.returncode, 0, done.stderr)
                for command in wanted:
                    commands += 1
                    runner.said(command, page)
        self.assertGreater(commands, 12)
        self.assertGreater(programs, 3)


if __name__ == '__main__':
    unittest.main()
