#!/usr/bin/env python3
"""The documentation in a browser: pages_test.py PAGES FOLDER. Pages are opened as files, light and dark,
wide and narrow, and searched as a person would; screenshots go to FOLDER."""
import os
import pathlib
import sys
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / 'tools/ospf-harbor/tests/browser'))

from browser import Browser  # noqa: E402

PAGES, FOLDER = [pathlib.Path(each).resolve() for each in sys.argv[1:3]]
LOOKED_AT = ['index.html', 'concepts.html', 'cookbook.html', 'model/index.html',
             'model/ospf_interface.html', 'c/ospf_harbor_oper-ospf_area.html',
             'guides/write-handlers.html', 'performance.html']

# How light a colour of the page is, 0 to 255.
LIGHT = ('(element => { const c = getComputedStyle(document.querySelector(element))[%r].match(/[\\d.]+/g);'
         ' return (Number(c[0]) * 3 + Number(c[1]) * 6 + Number(c[2])) / 10; })(%r)')


class Documentation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        FOLDER.mkdir(parents=True, exist_ok=True)
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()

    def open(self, page):
        self.browser.open(str(PAGES / page))

    def wait_for(self, expression):
        for _ in range(100):
            if self.browser.ask(expression):
                return
            time.sleep(0.05)
        self.fail('never true: ' + expression)

    def test_looks_light_and_dark(self):
        for dark in (False, True):
            self.browser.dark(dark)
            for page in LOOKED_AT:
                with self.subTest(page=page, dark=dark):
                    self.open(page)
                    ground, text = (self.browser.ask(LIGHT % (what, 'body'))
                                    for what in ('backgroundColor', 'color'))
                    self.assertGreater((text - ground) * (1 if dark else -1), 150)
                    # Nothing sticks out of the page but what scrolls within its own box.
                    self.assertTrue(self.browser.ask(
                        'document.documentElement.scrollWidth <= innerWidth'))
                    self.assertEqual(self.browser.complaints, [])
                    self.assertTrue(all(each.startswith('file://')
                                        for each in self.browser.requests))
                    name = page.replace('/', '-').replace('.html', '')
                    self.browser.screenshot(str(FOLDER / f'{name}-{"dark" if dark else "light"}.png'))

    def test_is_found_by_searching(self):
        for page, words, wanted in (
                ('index.html', 'error word', 'concepts.html#error-word'),
                ('c/runtime.html', 'kelp_feed_wait', 'c/kelp-embed.html#kelp_feed_wait'),
                ('model/ospf_area.html', 'ospf_interface.cost', 'model/ospf_interface.html#cost'),
                ('guides/watch.html', 'wire format offset', 'wire-format.html')):
            with self.subTest(words=words):
                self.open(page)
                self.browser.press('/')
                self.browser.type(words)
                self.wait_for('document.querySelectorAll("#results a").length > 0')
                found = self.browser.ask(
                    '[...document.querySelectorAll("#results a")].slice(0, 3).map(a => a.href).join(" ")')
                self.assertIn((PAGES / wanted.split('#')[0]).as_uri(), found)
                self.assertIn(wanted, found)
        self.browser.screenshot(str(FOLDER / 'search.png'))
        self.browser.call('Input.dispatchKeyEvent', type='keyDown', key='Enter')
        self.wait_for('location.href.includes("wire-format.html")')
        self.open('index.html')
        self.browser.press('/')
        self.browser.type('no such words at all')
        self.wait_for('document.querySelector("#results .nothing") !== null')

    def test_is_narrow_too(self):
        self.browser.dark(False)
        self.browser.call('Emulation.setDeviceMetricsOverride', width=390, height=800,
                          deviceScaleFactor=1, mobile=True)
        for page in LOOKED_AT:
            with self.subTest(page=page):
                self.open(page)
                self.assertTrue(self.browser.ask('document.documentElement.scrollWidth <= innerWidth'))
        self.open('index.html')
        self.browser.screenshot(str(FOLDER / 'narrow.png'))
        self.browser.call('Emulation.setDeviceMetricsOverride', width=1300, height=800,
                          deviceScaleFactor=1, mobile=False)


if __name__ == '__main__':
    unittest.main(argv=[sys.argv[0]])
