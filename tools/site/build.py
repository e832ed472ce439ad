#!/usr/bin/python3
"""Writes the documentation as pages that need no server: build.py FOLDER BUILD, a build folder.

Pages come from docs/*.md in the order of contents.toml, from docs/model.json (model_pages.py) and
from the doc blocks of the C headers (header_pages.py). Sources that pages show are taken from the
examples, and what commands print from running them. All links are relative, the search index is a
script, and nothing is fetched from elsewhere.
"""
import json
import pathlib
import re
import shutil
import sys
import tempfile
import tomllib

import jinja2
import markdown
from pygments.formatters import HtmlFormatter

import header_pages
import model_pages
import pieces

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent.parent


class Site:
    """The pages, and what can be searched for in them."""

    def __init__(self, folder):
        self.folder = folder
        self.found = []  # [title, address, what it is, words]
        contents = tomllib.loads((HERE / 'contents.toml').read_text())
        self.parts = contents['part']
        self.addresses = {page: address_of(page) for part in self.parts for page in part['pages']}
        self.files = {}  # of the project, which pages refer to: path -> address
        loader = jinja2.FileSystemLoader(HERE / 'look')
        self.frame = jinja2.Environment(loader=loader, autoescape=True, trim_blocks=True,
                                        undefined=jinja2.StrictUndefined).get_template('page.html')
        self.version = re.search(r'^project\(.* VERSION ([0-9.]+) ',
                                 (SOURCE / 'CMakeLists.txt').read_text(), re.M).group(1)

    def write(self, address, title, body, toc=()):
        """A page of that address, with the body as HTML and [(anchor, title)] as what is on it."""
        path = self.folder / address
        path.parent.mkdir(parents=True, exist_ok=True)
        up = '../' * address.count('/')
        parts = [(part['title'], [(self.title_of(page), self.addresses[page])
                                  for page in part['pages']]) for part in self.parts]
        path.write_text(self.frame.render(title=title, body=body, toc=toc, up=up, here=address,
                                          parts=parts, version=self.version))

    def find(self, title, address, kind, words=''):
        self.found.append([title, address, kind, words])

    def title_of(self, page):
        if page in header_pages.LISTS:
            return header_pages.LISTS[page]
        if page == model_pages.INDEX:
            return 'The tree of tables'
        return re.search(r'^# (.+)$', (SOURCE / 'docs' / page).read_text(), re.M).group(1)

    def address_of_file(self, path):
        """A copy of a file of the project, as text, for a link that leads out of the pages."""
        shown = {'.c', '.cpp', '.hpp', '.h', '.py', '.sh', '.md', '.json', '.svg', '.txt', ''}
        name = str(path.relative_to(SOURCE))
        suffix = '' if path.suffix in {'.json', '.svg', '.txt'} else '.txt'
        if path.suffix not in shown:
            suffix = ''
        self.files[path] = 'files/' + name + suffix
        return self.files[path]

    def end(self):
        for path, address in self.files.items():
            (self.folder / address).parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(path, self.folder / address)
        for name in ('site.css', 'site.js'):
            shutil.copyfile(HERE / 'look' / name, self.folder / name)
        light, dark = (HtmlFormatter(style=style).get_style_defs('.code')
                       for style in ('default', 'monokai'))
        (self.folder / 'code.css').write_text(
            f'{light}\n@media (prefers-color-scheme: dark) {{\n{dark}\n}}\n')
        index = json.dumps(self.found, separators=(',', ':'), ensure_ascii=False)
        (self.folder / 'search-index.js').write_text(f'window.searchIndex = {index};\n')


def address_of(page):
    return 'index.html' if page == 'start.md' else re.sub(r'\.md$', '', page) + '.html'


class Guide:
    """One hand-written page."""

    most_lines = 16  # of what one command prints

    def __init__(self, site, page, build):
        self.site, self.page, self.build = site, page, build
        self.path = SOURCE / 'docs' / page
        self.address = site.addresses[page]

    def with_outputs(self, text):
        """The text, with what its commands print below them."""
        with tempfile.TemporaryDirectory() as folder:
            runner = pieces.runner(pathlib.Path(folder), SOURCE, self.build)

            def shown(match):
                commands = pieces.commands_of(match.group(1).rstrip('\n').split('\n'))
                lines = []
                for command in commands:
                    said = runner.said(command, self.page)
                    more = ['...'] if len(said) > self.most_lines else []
                    lines += ['$ ' + command, *said[:self.most_lines], *more]
                return '```\n' + '\n'.join(lines) + '\n```' if commands else match.group(0)

            return re.sub(r'^```\n(.*?)^```$', shown, text, flags=re.M | re.S)

    def write(self):
        text = re.sub(r'<!-- include: (.+?) -->',
                      lambda match: pieces.included(match.group(1).split(), self.path),
                      self.with_outputs(self.path.read_text()))
        engine = markdown.Markdown(extensions=['tables', 'fenced_code', 'toc', 'codehilite',
                                               'sane_lists'],
                                   extension_configs={'codehilite': {'css_class': 'code',
                                                                     'guess_lang': False}})
        body = re.sub(r'(href|src)="([^"]+)"', self.link, engine.convert(text))
        top = engine.toc_tokens[0]
        toc = [(each['id'], each['name']) for each in top['children']]
        self.site.write(self.address, top['name'], body, toc)
        self.make_findable(body, top['name'])

    def make_findable(self, body, title):
        """Each heading with the words below it."""
        pieces_of_page = re.split(r'<h[1-3] id="([^"]+)">(.*?)</h[1-3]>', body, flags=re.S)
        for anchor, heading, text in zip(pieces_of_page[1::3], pieces_of_page[2::3],
                                         pieces_of_page[3::3]):
            words = ' '.join(pieces.plain(text).split())
            heading = pieces.plain(heading)
            self.site.find(heading if heading == title else f'{title}: {heading}',
                           f'{self.address}#{anchor}', 'page', words[:600])

    def link(self, match):
        attribute, target = match.groups()
        name, _, anchor = target.partition('#')
        if not name or re.match(r'[a-z]+:', name):
            return match.group(0)
        path = (self.path.parent / name).resolve()
        up = '../' * self.address.count('/')
        try:
            page = str(path.relative_to(SOURCE / 'docs'))
        except ValueError:
            page = None
        if page in self.site.addresses:
            to = self.site.addresses[page]
        elif path.is_file():
            to = self.site.address_of_file(path)
        else:
            sys.exit(f'{self.path.relative_to(SOURCE)}: found a link to {target}, expected a page of '
                     'contents.toml or a file')
        return f'{attribute}="{up}{to}{"#" + anchor if anchor else ""}"'


def main(folder, build):
    folder = pathlib.Path(folder)
    if folder.exists():
        shutil.rmtree(folder)
    site = Site(folder)
    for page in site.addresses:
        if page == model_pages.INDEX:
            model_pages.write(site, SOURCE, HERE)
        elif page in header_pages.LISTS:
            header_pages.write(site, SOURCE, page)
        else:
            Guide(site, page, pathlib.Path(build).resolve()).write()
    missing = {str(path.relative_to(SOURCE / 'docs')) for path in (SOURCE / 'docs').rglob('*.md')}
    missing -= site.addresses.keys()
    if missing:
        sys.exit(f'tools/site/contents.toml: found no {", ".join(sorted(missing))}, expected each '
                 'page of docs/')
    site.end()


if __name__ == '__main__':
    if len(sys.argv) != 3:
        sys.exit('usage: build.py FOLDER BUILD')
    main(*sys.argv[1:])
