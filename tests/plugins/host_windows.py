"""The plugin's window in other programs: a hand works in it, and the program has to hold what it did."""
import base64
import math
import re
import signal
import time
import types
import zlib
from xml.etree import ElementTree

import ardour
from desk import HELPERS, POINTS, Desk
from lv2_bundle import RATE, controls_of, environment, presets_of, run

PRESET, LABEL, URI = "voice", "Voice", "urn:channelstrip:lv2:stereo"
SEEN = "opens with a preset's values; a handle dragged, wheel, typed value, reset and undo reach the host"


class Hand:
    """Works in a window that shows PRESET. values() tells what the host holds, by symbol."""

    def __init__(self, desk, window, values, bundle):
        self.desk, self.window, self.values = desk, window, values
        self.held = {symbol: float(value) for symbol, value in presets_of(bundle)[PRESET].items()}
        self.text = (bundle / "stereo.ttl").read_text()
        desk.wait("picture in the window", lambda: len(set(desk.picture(window))) > 300)

    def expect(self, what, within=1e-3, **changes):
        """These values, within a part of them, and all others as they were."""
        wanted, wrong = self.held | changes, {}

        def is_right():
            now = self.values()
            wrong.clear()
            for symbol, value in wanted.items():
                off = abs(now.get(symbol, math.nan) - value)
                if not off <= abs(value) * (within if symbol in changes else 1e-5):
                    wrong[symbol] = f"{now.get(symbol)} instead of {value}"
            self.held = now
            return not wrong

        for _ in range(5):
            time.sleep(0.4)  # what is done takes a moment to arrive, and a click keeps the focus for another
            if is_right():
                return
        self.desk.fail(f"{what}: {wrong}")

    def range_of(self, symbol):
        found = re.search(rf'"{symbol}" ;.*?lv2:default (\S+) ;\s+lv2:minimum (\S+) ;\s+lv2:maximum (\S+)', self.text, re.S)
        return map(float, found.groups())

    def undo(self):
        self.desk.click(self.window, POINTS["title"])  # hosts take the focus when they save
        self.desk.keys("ctrl+z")

    def work(self):
        desk, window, start = self.desk, self.window, dict(self.held)
        self.expect("opening")
        _, least, most = self.range_of("eq2_q")
        turned = start["eq2_q"] * (most / least) ** 0.01
        desk.click(window, POINTS["handle2"], button=4)
        self.expect("a turn of the wheel", eq2_q=turned)
        desk.drag(window, POINTS["handle2"], POINTS["handle3"])
        # A pixel is 1.5 % of the frequency, and 0.07 dB.
        self.expect("a handle dragged onto another", 0.03, eq2_frequency=start["eq3_frequency"], eq2_gain=start["eq3_gain"])
        dragged = {symbol: self.held[symbol] for symbol in ("eq2_frequency", "eq2_gain")}
        threshold = POINTS["compressor_threshold"]
        desk.click(window, threshold)
        desk.type("-27.5")
        desk.keys("Return")
        self.expect("a typed value", compressor_threshold=-27.5)
        desk.click(window, threshold, times=2)
        initial, _, _ = self.range_of("compressor_threshold")
        self.expect("a double click", compressor_threshold=initial)
        self.undo()
        self.expect("undoing the double click", compressor_threshold=-27.5)
        self.undo()
        self.expect("undoing the typed value", compressor_threshold=start["compressor_threshold"], **dragged)
        self.undo()
        self.expect("undoing the drag", eq2_q=turned, **{symbol: start[symbol] for symbol in dragged})
        self.undo()
        self.expect("undoing the wheel", 1e-5, **start)


def jalv(bundle, program, folder):
    with Desk("jalv-window", folder, environment(bundle) | {"HOME": str(folder)}) as desk:
        desk.start_jack()
        desk.start("jalv.gtk3", "-p", f"urn:channelstrip:lv2:preset:{PRESET}", URI)
        host = desk.window("ChannelStrip Stereo")
        saved = (folder / f"state{number}" for number in range(100))

        def values():
            state = next(saved)
            desk.activate(host)
            desk.keys("ctrl+s")
            dialog = desk.window("Save State")
            desk.activate(dialog)
            desk.type(state)

            def saved_values():
                if desk.is_shown(dialog):  # it takes no key while it looks for names that begin so
                    desk.keys("Return")
                    return None
                text = (state / "state.ttl").read_text()
                return re.findall(r'lv2:symbol "(\w+)" ;\s+pset:value (\S+)', text)

            return {symbol: float(value) for symbol, value in desk.wait("saved state", saved_values)}

        Hand(desk, desk.plugin_window(host), values, bundle).work()
        yield "stereo", SEEN


# Its engine without devices, so that it asks nothing at its first start; it shows projects as they were left.
ARDOUR_CONFIG = """<?xml version="1.0" encoding="UTF-8"?>
<Ardour>
  <Config><Option name="hide-dummy-backend" value="0"/><Option name="try-autostart-engine" value="1"/></Config>
  <Extra><AudioMIDISetup><EngineStates>
    <State backend="None (Dummy)" driver="Normal Speed" device="Silence" input-device="" output-device=""
      sample-rate="48000" buffer-size="1024" n-periods="0" input-latency="0" output-latency="0" active="1"
      use-buffered-io="0" midi-option="1 in, 1 out, Silence" lru="1"/>
  </EngineStates></AudioMIDISetup></Extra>
</Ardour>
"""
INLINE_GROUND = bytes.fromhex("11151a")  # the inline display's, and of nothing else in Ardour's window


def ardour7(bundle, program, folder):
    env = environment(bundle) | {"HOME": str(folder), "XDG_CONFIG_HOME": str(folder)}
    project, take = folder / "project", types.SimpleNamespace(env=env)
    file, place = project / "project.ardour", controls_of(bundle, "stereo").index(ardour.AUTOMATED)
    run("ardour7-new_session", "-s", RATE, "-m", 2, project, "project", env=env)
    ardour.run_lua(take, "make", project, URI, 2, LABEL, place, 0, 0, RATE)
    text = re.sub("<EngineHints[^>]*/>", "", file.read_text())
    track = re.search('<Route [^>]*id="([0-9]+)" name="take"', text)[1]
    plugin = re.search('<Processor id="([0-9]+)" name="ChannelStrip Stereo"', text)[1]
    shown = (f'<Extra><UI><Window name="P-{track}-{plugin}" visible="1" x-off="-1" y-off="-1" x-size="-1" y-size="-1"'
             ' custom-ui="1"/></UI></Extra>')
    file.write_text(text.replace("</Session>", f"{shown}</Session>"))
    mixer = '<instant><Main current-tab="mixer"/></instant>'
    (project / "instant.xml").write_text(mixer)
    settings = folder / "ardour7"
    settings.mkdir(exist_ok=True)
    (settings / ".a7").touch()
    (settings / "config").write_text(ARDOUR_CONFIG)
    with Desk("ardour-window", folder, env) as desk:
        desk.start("ardour", "--no-announcements", "--no-splash", file)
        main, plugin = desk.window("project - Ardour$"), desk.window("take: ChannelStrip")
        desk.place(main, 0, 100)
        desk.place(plugin, 1380, 100)

        def values():
            desk.activate(main)
            text = desk.written(file, "</Session>", lambda: desk.keys("ctrl+s"))
            ports = ElementTree.fromstring(text).iter("Port")
            return {port.get("symbol"): float(port.get("value")) for port in ports if port.get("symbol")}

        def inline():
            return {at for at, pixel in enumerate(desk.picture(main)) if pixel == INLINE_GROUND}

        hand = Hand(desk, desk.plugin_window(plugin), values, bundle)
        hand.work()
        before = desk.wait("inline display", inline)
        desk.drag(hand.window, POINTS["handle2"], POINTS["handle3"])
        desk.wait("change of the inline display", lambda: inline() != before)
        yield "stereo", f"{SEEN}; the inline display follows"


def packed(text):
    """As Qt packs it: its length, and what zlib makes of it."""
    return base64.b64encode(len(text).to_bytes(4, "big") + zlib.compress(text)).decode()


QTRACTOR_SESSION = """<!DOCTYPE qtractorSession>
<session version="Qtractor 0.9.31" name="strip">
 <properties><directory>{folder}</directory><sample-rate>{rate}</sample-rate></properties>
 <devices><audio-engine><audio-bus mode="duplex" name="Master">
  <channels>2</channels>
  <input-plugins><plugin type="CLAP">
   <filename>{binary}</filename><index>0</index><label>ChannelStrip</label><activated>1</activated>
   <configs><config key="state">{state}</config></configs>
   <editor-pos>1350,100</editor-pos>
  </plugin></input-plugins>
 </audio-bus></audio-engine></devices>
</session>
"""


def qtractor(bundle, program, folder):
    """The CLAP plugin, which lies beside the bundle's folder. It asks for a sequencer, and gets one that does nothing."""
    binary, session, sequencer = bundle.parent.parent / "clap/channelstrip.clap", folder / "strip.qtr", folder / "sequencer.so"
    run("cc", "-shared", "-fPIC", "-o", sequencer, HELPERS / "sequencer.c")
    state = packed((HELPERS.parent.parent / f"presets/{PRESET}.toml").read_bytes())
    session.write_text(QTRACTOR_SESSION.format(folder=folder, rate=RATE, binary=binary, state=state))
    folder.chmod(0o700)
    env = environment(bundle) | {"HOME": str(folder), "XDG_CONFIG_HOME": str(folder), "XDG_RUNTIME_DIR": str(folder)}
    names = re.findall(r'lv2:symbol "(\w+)" ;\s+lv2:name "([^"]+)"', (bundle / "stereo.ttl").read_text())
    with Desk("qtractor-window", folder, env) as desk:
        desk.start_jack()
        host = desk.start("qtractor", session, env=desk.env | {"LD_PRELOAD": str(sequencer)})
        main = desk.window("strip.qtr")
        desk.activate(main)
        desk.keys("F9")
        desk.click(desk.window("^Mixer"), (43, 46), times=2)  # the first bus has the plugin

        def values():
            text = desk.written(session, "</session>", lambda: host.send_signal(signal.SIGUSR1))
            told = {value.get("name"): float(value.text) for value in ElementTree.fromstring(text).iter("param")}
            told["Enabled"] = 1 - told["Bypass"]
            return {symbol: told[name] for symbol, name in names if name in told}

        Hand(desk, desk.plugin_window(desk.window("^ChannelStrip - Master In")), values, bundle).work()
        yield "CLAP", SEEN
