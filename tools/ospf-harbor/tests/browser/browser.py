"""Chromium without a window, driven over a pair of pipes: pages are opened, looked at and clicked
as a person would, and whatever they ask the network for is kept."""

import base64
import json
import os
import subprocess
import tempfile


class Browser:
    def __init__(self, width=1300, height=800):
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        commands, to_browser = os.pipe()
        from_browser, answers = os.pipe()

        def place_pipes():
            # As the option has it: 3 is read by the browser, 4 is written to.
            high = [os.dup2(commands, 103), os.dup2(answers, 104)]
            os.dup2(high[0], 3)
            os.dup2(high[1], 4)

        self.process = subprocess.Popen(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--remote-debugging-pipe",
             "--window-size=%d,%d" % (width, height), "--user-data-dir=" + self.folder.name,
             "--no-first-run", "--disable-background-networking", "about:blank"],
            preexec_fn=place_pipes, close_fds=False,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(commands)
        os.close(answers)
        self.output = to_browser
        self.input = os.fdopen(from_browser, "rb")
        self.number = 0
        self.session = None
        self.requests = []
        self.complaints = []
        self.events = set()
        target = next(each for each in self.call("Target.getTargets")["targetInfos"]
                      if each["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=target["targetId"],
                                 flatten=True)["sessionId"]
        for domain in "Page", "Network", "Runtime", "Log":
            self.call(domain + ".enable")
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=False)

    def close(self):
        self.process.kill()
        self.process.wait()
        self.folder.cleanup()

    def message(self):
        octets = bytearray()
        while (octet := self.input.read(1)) not in (b"\0", b""):
            octets += octet
        if not octets:
            raise RuntimeError("the browser has ended")
        return json.loads(octets)

    def note(self, message):
        method = message.get("method")
        parameters = message.get("params", {})
        self.events.add(method)
        if method == "Network.requestWillBeSent":
            self.requests.append(parameters["request"]["url"])
        elif method == "Runtime.exceptionThrown":
            self.complaints.append(json.dumps(parameters["exceptionDetails"])[:400])
        elif method == "Log.entryAdded":
            self.complaints.append(parameters["entry"]["text"])

    def call(self, method, **parameters):
        self.number += 1
        request = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            request["sessionId"] = self.session
        os.write(self.output, json.dumps(request).encode() + b"\0")
        while True:
            answer = self.message()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError("%s: %s" % (method, answer["error"]))
                return answer["result"]
            self.note(answer)

    def open(self, path):
        self.requests.clear()
        self.complaints.clear()
        self.events.clear()
        self.call("Page.navigate", url="file://" + os.path.abspath(path))
        while "Page.loadEventFired" not in self.events:
            self.note(self.message())

    def ask(self, expression):
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in result:
            raise RuntimeError(json.dumps(result["exceptionDetails"])[:400])
        return result["result"].get("value")

    def click(self, x, y):
        for kind in "mousePressed", "mouseReleased":
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def drag(self, x, y, dx, dy):
        self.call("Input.dispatchMouseEvent", type="mousePressed", x=x, y=y, button="left",
                  clickCount=1)
        for part in range(1, 5):
            self.call("Input.dispatchMouseEvent", type="mouseMoved", x=x + dx * part / 4,
                      y=y + dy * part / 4, button="left", buttons=1)
        self.call("Input.dispatchMouseEvent", type="mouseReleased", x=x + dx, y=y + dy,
                  button="left", clickCount=1)

    def wheel(self, x, y, turn):
        self.call("Input.dispatchMouseEvent", type="mouseWheel", x=x, y=y, deltaX=0, deltaY=turn)

    def press(self, key):
        for kind in "keyDown", "keyUp":
            self.call("Input.dispatchKeyEvent", type=kind, key=key,
                      **({"text": key} if len(key) == 1 and kind == "keyDown" else {}))

    def type(self, text):
        self.call("Input.insertText", text=text)

    def dark(self, is_dark):
        self.call("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": "dark" if is_dark else "light"}])

    def screenshot(self, path):
        data = self.call("Page.captureScreenshot", format="png")["data"]
        with open(path, "wb") as out:
            out.write(base64.b64decode(data))
