"""X11 sessions on Xorg, with a dummy screen and with pointing devices that scroll smoothly."""

import os

from harness.pointers import InputTestPointer
from harness.waiting import until
from harness.x11 import X11Session

CONFIGURATION = """
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoEnableDevices" "false"
  Option "DontVTSwitch" "true"
EndSection
Section "Device"
  Identifier "card"
  Driver "dummy"
  VideoRam 65536
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5-1000
  VertRefresh 5-200
  Modeline "only" {mode}
EndSection
Section "Screen"
  Identifier "screen"
  Device "card"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "only"
  EndSubSection
EndSection
{devices}
Section "ServerLayout"
  Identifier "layout"
  Screen "screen"
{roles}
EndSection
"""

DEVICE = """
Section "InputDevice"
  Identifier "{name}"
  Driver "inputtest"
  Option "DeviceType" "{kind}"
  Option "SocketPath" "{socket}"
EndSection
"""

DEVICES = {
    "keys": ("Keyboard", "CoreKeyboard"),
    "wheel": ("Pointer", "CorePointer"),
    "touchpad": ("Pointer", "SendCoreEvents"),
}


def mode_line(width, height):
    """Sixty pictures a second of that size, with a little time between lines and between pictures."""
    across = [width, width + 16, width + 32, width + 48]
    down = [height, height + 3, height + 6, height + 9]
    megahertz = across[-1] * down[-1] * 60 / 1e6
    return " ".join(f"{number:.10g}" for number in (megahertz, *across, *down))


class XorgSession(X11Session):
    """Has a mouse with a wheel of high resolution, and a touchpad, with the properties of libinput's driver."""

    def begin(self):
        super().begin()
        self.wheel_device = self._plugged("wheel", (0, 0, 1))
        self.touchpad = self._plugged("touchpad", (1, 1, 0))

    def end(self):
        for device in ("wheel_device", "touchpad"):
            if hasattr(self, device):
                getattr(self, device).close()
        super().end()

    def _plugged(self, name, scroll_methods):
        # The methods: two fingers, an edge, and a held button.
        self._set_property(name, 8, "libinput Scroll Methods Available", *scroll_methods)
        self._set_property(name, 32, "libinput Scrolling Pixel Distance", 15)
        return InputTestPointer(self.folder / name)

    def _set_property(self, device, bits, name, *values):
        self.run("xinput", "set-prop", device, "--type=int", f"--format={bits}", name, *values)

    def _start_server(self):
        configuration = self.folder / "xorg.conf"
        devices = [
            DEVICE.format(name=name, kind=kind, socket=self.folder / name) for name, (kind, _) in DEVICES.items()
        ]
        roles = [f'  InputDevice "{name}" "{role}"' for name, (_, role) in DEVICES.items()]
        configuration.write_text(
            CONFIGURATION.format(
                mode=mode_line(self.width, self.height), devices="".join(devices), roles="\n".join(roles)
            ),
            encoding="utf-8",
        )
        reading, writing = os.pipe()
        with os.fdopen(reading) as answers:
            self.start(
                "Xorg",
                *("-displayfd", writing),
                *("-config", configuration),
                *("-logfile", self.folder / "xorg.log"),
                *("-nolisten", "tcp"),
                "-noreset",
                # The machine's consoles are not used.
                "-novtswitch",
                "-sharevts",
                pass_fds=(writing,),
            )
            os.close(writing)
            number = answers.readline().strip()
        if not number:
            raise AssertionError("Xorg did not start:\n" + self.report())
        self.display = f":{number}"
        self.environment["DISPLAY"] = self.display
        until((self.folder / "touchpad").exists, "the devices")
