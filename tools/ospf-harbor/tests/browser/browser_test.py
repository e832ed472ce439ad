#!/usr/bin/env python3
"""Pages of pictures in a browser: browser_test.py TOOL RECORDINGS FOLDER. Networks of 6 to 2,500
routers and recorded ones are drawn, opened, searched and clicked through; what the page shows is held
against what is asked of the tool itself. Screenshots go to FOLDER."""

import json
import os
import re
import subprocess
import sys
import time
import unittest

from browser import Browser

TOOL, RECORDINGS, FOLDER = [os.path.abspath(each) for each in sys.argv[1:4]]
HERE = os.path.dirname(os.path.abspath(__file__))


def tool(*words):
    return subprocess.run([TOOL, *words], check=True, capture_output=True, text=True).stdout


def page(name, *words):
    path = os.path.join(FOLDER, name + ".html")
    tool("graph", "--html", "-o", path, *words)
    return path


def recording(name):
    return os.path.join(RECORDINGS, name, "all.pcap")


def made_network(routers):
    path = os.path.join(FOLDER, "%d.pcap" % routers)
    subprocess.run([sys.executable, os.path.join(HERE, "make_network.py"), str(routers), path],
                   check=True)
    return path


def middle(selector):
    return ("(() => { const b = document.querySelector(%s).getBoundingClientRect();"
            " return [b.x + b.width / 2, b.y + b.height / 2]; })()" % json.dumps(selector))


NODE = ".node[data-node='%d'] .body"
SCALE = "Number(/scale\\((.*)\\)/.exec(document.querySelector('#scene').getAttribute('transform'))[1])"
DETAILS = "document.querySelector('#details').innerText"


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()

    def open(self, path):
        self.browser.dark(False)
        self.browser.open(path)
        self.data = json.loads(self.browser.ask("document.querySelector('#data').textContent"))

    def ask(self, expression):
        return self.browser.ask(expression)

    def shot(self, name):
        self.browser.screenshot(os.path.join(FOLDER, name + ".png"))

    def node(self, title, at=0):
        return next(place for place, node in enumerate(self.data[at]["nodes"])
                    if node["title"] == title)

    def click_node(self, title, at=0):
        self.browser.click(*self.ask(middle(NODE % self.node(title, at))))

    def tearDown(self):
        self.assertEqual([], self.browser.complaints)
        self.assertEqual([], [each for each in self.browser.requests
                              if not each.startswith("file:///")])

    def test_sizes(self):
        for routers in 6, 60, 600, 2500:
            with self.subTest(routers=routers):
                path = page(str(routers), "--from", made_network(routers))
                begin = time.monotonic()
                self.open(path)
                print("%d routers: drawn by the browser in %.1f s" %
                      (routers, time.monotonic() - begin))
                self.assertEqual(routers, self.ask("document.querySelectorAll('.node.router').length"))
                box = self.ask("(() => { const b = document.querySelector('#scene').getBoundingClientRect();"
                               " return [b.left, b.top, b.right, b.bottom]; })()")
                self.assertGreaterEqual(min(box[0], box[1]), 0)
                self.assertLessEqual(box[2], self.ask("document.querySelector('#view').clientWidth"))
                self.assertLessEqual(box[3], 800)
                self.shot("page-%d" % routers)
                self.assert_texts_fit()
                if routers == 2500:
                    self.assert_area_names_apart()
                self.assert_costs_apart()

    # No text is wider than what it stands in.
    def assert_texts_fit(self):
        wide = self.ask("""[...document.querySelectorAll('.node')].slice(0, 300).filter((node) => {
          const body = node.querySelector('.body').getBBox();
          return [...node.querySelectorAll('text')].some((text) => text.getBBox().width > body.width + 1);
        }).map((node) => node.textContent)""")
        self.assertEqual([], wide)

    # The costs that are shown, of thousands, cover neither each other nor a router; few have no room.
    def assert_costs_apart(self):
        boxes, hidden = self.ask("""(() => {
          const all = [...document.querySelectorAll('.cost')];
          const boxOf = (each) => { const b = each.getBBox(); return [b.x, b.y, b.x + b.width, b.y + b.height]; };
          const scene = document.querySelector('#scene');
          scene.classList.remove('far', 'middle');
          scene.setAttribute('transform', 'scale(1)');  // where fonts have their size
          const costs = all.filter((each) => !each.classList.contains('crowded')).map(boxOf);
          const nodes = [...document.querySelectorAll('.node .body')].map(boxOf);
          return [[costs, nodes], all.length - costs.length]; })()""")
        costs, nodes = boxes
        self.assertGreater(len(costs), 5)
        self.assertLessEqual(hidden, len(costs) / 50)
        print("%d costs, %d without room" % (len(costs), hidden))
        # A text's box is higher than its figures.
        slack = (costs[0][3] - costs[0][1]) / 5
        known = sorted([(box, False) for box in costs] + [(box, True) for box in nodes])
        widest = max(box[2] - box[0] for box, _ in known)
        for at, (a, is_node) in enumerate(known):
            for b, other_is_node in known[at + 1:]:
                if b[0] > a[0] + widest:
                    break
                if is_node and other_is_node:
                    continue
                apart = (a[2] <= b[0] or b[2] <= a[0] or
                         a[3] - slack <= b[1] or b[3] - slack <= a[1])
                self.assertTrue(apart, (a, b))

    def assert_area_names_apart(self):
        boxes = self.ask("""[...document.querySelectorAll('.area-name')]
          .filter((name) => name.getClientRects().length > 0).map((name) => {
          const b = name.getBoundingClientRect(); return [b.left, b.top, b.right, b.bottom]; })""")
        self.assertGreater(len(boxes), 10)
        for at, a in enumerate(boxes):
            for b in boxes[:at]:
                self.assertFalse(a[0] < b[2] and b[0] < a[2] and a[1] < b[3] - 4 and b[1] < a[3] - 4)

    def test_a_click_shows_the_lsas_of_a_router(self):
        self.open(page("nssa", "--from", recording("nssa")))
        self.click_node("10.251.0.4")
        expected = tool("lsdb", "--v2", "--adv-router", "10.251.0.4", "--json", "--from",
                        recording("nssa")).splitlines()
        self.assertEqual(len(expected), self.ask("document.querySelectorAll('#details details').length"))
        self.assertIn("10.251.0.4", self.ask("document.querySelector('#details h2').textContent"))
        text = self.ask("document.querySelector('#details').textContent")
        for line in expected:
            self.assertIn("%s, advertised by 10.251.0.4" % json.loads(line)["lsa_id"], text)
        self.ask("document.querySelector('#details details').open = true")
        self.shot("page-router")

    def test_a_click_on_a_line_shows_both_ends(self):
        self.open(page("campus", "--from", recording("campus")))
        ends = [self.ask(middle(NODE % self.node(each))) for each in ("10.255.0.1", "10.255.0.2")]
        self.browser.click((ends[0][0] + ends[1][0]) / 2, (ends[0][1] + ends[1][1]) / 2)
        text = self.ask("document.querySelector('#details').textContent")
        self.assertIn("10.255.0.1 to 10.255.0.2", text)
        for router in "10.255.0.1", "10.255.0.2":
            self.assertIn("Router LSA %s" % router, text)
        self.browser.click(5, 790)
        self.assertIn("Routers", self.ask(DETAILS))

    def test_versions_and_instances_are_switched(self):
        self.open(page("instances", "--from", recording("instances")))
        names = self.ask("[...document.querySelector('#instance').options].map((each) => each.text)")
        self.assertEqual([each["name"] for each in self.data], names)
        self.assertGreater(len(names), 2)
        for at, picture in enumerate(self.data):
            self.ask("(() => { const s = document.querySelector('#instance'); s.value = %d;"
                     " s.dispatchEvent(new Event('change')); })()" % at)
            self.assertEqual(len(picture["nodes"]), self.ask("document.querySelectorAll('.node').length"))
            self.assertEqual(picture["title"], self.ask("document.querySelector('#title').textContent"))

    def test_areas_are_switched(self):
        self.open(page("transit", "--v2", "--from", recording("transit")))
        before = self.ask(SCALE)
        self.ask("document.querySelectorAll('#areas button')[3].click()")
        shown = self.ask("[...document.querySelectorAll('.node:not(.hidden)')].map((n) => Number(n.dataset.node))")
        expected = [at for at, node in enumerate(self.data[0]["nodes"]) if 3 in node["areas"]]
        self.assertEqual(expected, shown)
        self.assertGreater(self.ask(SCALE), before)
        self.shot("page-area")

    def test_zoom_and_pan(self):
        self.open(page("campus", "--from", recording("campus")))
        place = middle(NODE % self.node("10.255.0.1"))
        scale, at = self.ask(SCALE), self.ask(place)
        self.browser.wheel(at[0], at[1], -300)
        self.assertGreater(self.ask(SCALE), scale * 1.2)
        for now, was in zip(self.ask(place), at):  # what is under the pointer stays there
            self.assertAlmostEqual(now, was, delta=2)
        self.browser.drag(300, 700, 80, -40)
        self.assertAlmostEqual(self.ask(place)[0], at[0] + 80, delta=6)
        self.ask("document.querySelector('#view').focus()")
        self.browser.press("0")
        self.assertAlmostEqual(self.ask(SCALE), scale, delta=0.01)
        self.browser.press("+")
        self.assertGreater(self.ask(SCALE), scale * 1.2)

    def test_search(self):
        self.open(page("600", "--from", made_network(600)))
        self.ask("document.querySelector('#search').focus()")
        self.browser.type("edge7.example")
        self.assertEqual(1, self.ask("document.querySelectorAll('.node.hit').length"))
        self.ask("document.querySelector('#results button').click()")
        self.assertIn("edge7.example", self.ask("document.querySelector('#details h2').textContent"))
        box = self.ask(middle(".node.chosen .body"))
        self.assertAlmostEqual(box[0], self.ask("document.querySelector('#view').clientWidth") / 2, delta=5)
        self.shot("page-search")
        # Who announces a prefix is found by its LSA.
        self.ask("document.querySelector('#search').value = ''")
        self.browser.type("External LSA 192.168.57.0")
        self.assertTrue(self.ask("document.querySelector('#found').textContent").startswith("0 places, 1 LSA"))
        self.ask("document.querySelector('#results button').click()")
        self.assertIn("edge7.example", self.ask("document.querySelector('#details h2').textContent"))
        self.assertIn("192.168.57.0", self.ask("document.querySelector('#details details[open]').textContent"))

    def test_a_difference_is_in_words_too(self):
        path = os.path.join(FOLDER, "difference.html")
        tool("graph", "--html", "-o", path, "--diff", recording("domain"),
             os.path.join(RECORDINGS, "domain", "before.pcap"))
        self.open(path)
        self.click_node("10.244.0.8")
        self.assertIn("10.244.0.8 (went)", self.ask(DETAILS))
        self.shot("page-difference")

    def test_a_way(self):
        path = os.path.join(FOLDER, "way.html")
        tool("path", "10.255.0.1", "10.255.0.6", "--html", "-o", path, "--from", recording("campus"))
        self.open(path)
        self.assertEqual(3, self.ask("document.querySelectorAll('.node.way').length"))
        self.shot("page-way")

    def test_in_the_dark_texts_have_contrast(self):
        self.open(page("nssa", "--from", recording("nssa")))
        for dark in False, True:
            self.browser.dark(dark)
            ground = self.ask("getComputedStyle(document.body).backgroundColor")
            for selector in ".node .title", "#title", "#keys", "#details button":
                colour = self.ask("(() => { const s = getComputedStyle(document.querySelector(%s));"
                                  " return '%s' === 'svg' ? s.fill : s.color; })()"
                                  % (json.dumps(selector), "svg" if "node" in selector else "html"))
                self.assertGreater(contrast(ground, colour), 4.5, (dark, selector, colour))
        self.shot("page-dark")

    def test_every_control_has_a_name(self):
        self.open(page("nssa", "--from", recording("nssa")))
        unnamed = self.ask("""[...document.querySelectorAll('button, input, select')].filter((each) =>
          !(each.getAttribute('aria-label') || each.textContent.trim() ||
            (each.labels && each.labels.length > 0))).length""")
        self.assertEqual(0, unnamed)

    # A host name that would be a script, and an image that would ask the network.
    def test_a_name_that_is_a_script_is_a_name(self):
        path = page("named", "--v2", "--from", made_network(6))
        evil = "</script><img src=http://192.0.2.1/x onerror=\"document.title='run'\">"
        with open(path, encoding="utf-8") as source:
            text = source.read()
        as_json = json.dumps(evil).replace("<", "\\u003c")[1:-1]
        self.assertIn("edge1.example", text)
        with open(path, "w", encoding="utf-8") as out:
            out.write(text.replace("edge1.example", as_json))
        self.open(path)
        self.click_node(evil)
        self.assertEqual(0, self.ask("document.querySelectorAll('img').length"))
        self.assertEqual("OSPF topology", self.ask("document.title"))
        self.assertIn(evil, self.ask("document.querySelector('#details h2').textContent"))


def contrast(a, b):
    def luminance(colour):
        channels = [float(each) / 255 for each in re.findall(r"[\d.]+", colour)[:3]]
        linear = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in channels]
        return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]

    light, dark = sorted((luminance(a), luminance(b)), reverse=True)
    return (light + 0.05) / (dark + 0.05)


os.makedirs(FOLDER, exist_ok=True)
unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
