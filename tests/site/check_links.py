#!/usr/bin/python3
"""Every link of pages in a folder leads somewhere: check_links.py FOLDER. What a page loads lies in the
folder too, and each address of the search index is there."""
import html.parser
import json
import pathlib
import posixpath
import sys
import urllib.parse

OUTSIDE = ('https://', 'http://', 'mailto:')


class Page(html.parser.HTMLParser):
    """The anchors of a page, its links, and what it loads."""

    def __init__(self, text):
        super().__init__()
        self.anchors, self.links, self.loads = set(), [], []
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if attributes.get('id'):
            self.anchors.add(attributes['id'])
        if tag == 'a' and 'href' in attributes:
            self.links.append(attributes['href'])
        if tag == 'link':
            self.loads.append(attributes['href'])
        if 'src' in attributes:
            self.loads.append(attributes['src'])


def main(folder):
    pages = {str(path.relative_to(folder)): Page(path.read_text())
             for path in folder.rglob('*.html')}
    wrong, checked = [], 0

    def check(page, link):
        nonlocal checked
        checked += 1
        address, _, anchor = link.partition('#')
        target = posixpath.normpath(posixpath.join(posixpath.dirname(page),
                                                   urllib.parse.unquote(address))) if address else page
        if not (folder / target).is_file() or target.startswith('..'):
            wrong.append(f'{page}: found a link to {link}, expected a file')
        elif anchor and target in pages and anchor not in pages[target].anchors:
            wrong.append(f'{page}: found a link to {link}, expected an element with that id')

    for name, page in pages.items():
        for link in page.links:
            if not link.startswith(OUTSIDE):
                check(name, link)
        for load in page.loads:
            if load.startswith(OUTSIDE) or load.startswith('//'):
                wrong.append(f'{name}: found {load} to load, expected nothing from elsewhere')
            else:
                check(name, load)
    index = (folder / 'search-index.js').read_text()
    for _, address, _, _ in json.loads(index[index.index('['):index.rindex(']') + 1]):
        check('index.html', address)
    for each in wrong:
        print(each, file=sys.stderr)
    print(f'{len(pages)} pages, {checked} links, {len(wrong)} of them wrong')
    return 1 if wrong or not pages else 0


if __name__ == '__main__':
    sys.exit(main(pathlib.Path(sys.argv[1])))
