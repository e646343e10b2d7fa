import json

from harness import until
from launcher.read_aloud import ReadAloud


class ToAScreenReader(ReadAloud):
    """The launcher's objects and actions over AT-SPI."""

    def setUp(self):
        self.begin_session(1280, 800)
        self.made = self.applications.add_many()
        paths = [str(application.path) for application in self.made]
        folder = {"id": "3F2504E0-4F89-11D3-9A0C-0305E82C3301", "name": "Games", "apps": paths[:5]}
        self.layout_file.parent.mkdir(parents=True)
        self.layout_file.write_text(
            json.dumps([{"folder": {"_0": folder}}] + [{"app": {"_0": path}} for path in paths[5:]])
        )
        self.launcher = self.begin_launcher(LANGUAGE="en")
        self.window = self.session.window_of_class("org.amberquill.Amberquill")
        until(lambda: self.find("push button", "Games, folder, 5 apps"), "the folder among the objects")

    def expect(self, role, name, states=(), without=(), press=True):
        """Waits for the one object of that role and name, in these states and without the others."""

        def is_there():
            found = self.find(role, name)
            is_right = found and set(states) <= set(found["states"]) and not set(without) & set(found["states"])
            return found if is_right else None

        found = until(is_there, f"{role} {name}, {states}, not {without}")
        if press:
            self.assertIn("press", [action.lower() for action in found["actions"]])
        return found

    def test_each_object_has_its_name_role_state_and_action(self):
        self.expect("frame", "Amberquill", press=False)
        self.expect("push button", self.made[5].name, states=("showing", "visible"))
        centre = self.grid.cell_centre(1)

        def is_in_place():
            x, y, width, height = self.find("push button", self.made[5].name)["place"]
            return abs(x + width / 2 - centre[0]) < 3 and abs(y + height / 2 - centre[1]) < 3

        until(is_in_place, "the tile in its place")
        for application in self.made[5:10]:
            self.expect("push button", application.name)
        self.expect("push button", "New Folder", states=("showing",))
        self.expect("push button", "Settings", states=("showing",))
        first = self.expect("page tab", "Page 1 of 3", states=("selected",))
        self.expect("page tab", "Page 2 of 3", without=("selected",))
        self.assertEqual(first["place"][2:], [18, 18])
        field = self.expect("text", "Search", states=("editable", "focusable", "focused"), press=False)
        self.assertEqual(field["text"], "")
        self.session.type("app 1")
        until(lambda: (self.find("text", "Search") or {}).get("text") == "app 1", "the typed text")
        self.expect("push button", "Clear")

    def test_a_press_does_what_a_click_does(self):
        self.press_object("page tab", "Page 2 of 3")
        until(lambda: "selected" in (self.find("page tab", "Page 2 of 3") or {"states": ()})["states"], "page 2")
        self.press_object("page tab", "Page 1 of 3")
        until(lambda: "selected" in (self.find("page tab", "Page 1 of 3") or {"states": ()})["states"], "page 1")
        self.press_object("push button", "Games, folder, 5 apps")
        title = until(lambda: next((each for each in self.tree() if each["text"] == "Games"), None), "the title")
        self.assertIn("editable", title["states"])
        self.expect("push button", self.made[0].name)
        until(lambda: not self.find("push button", self.made[6].name), "the page's end")
        self.session.press("Escape")
        until(lambda: not self.find("push button", self.made[0].name), "the closed folder")
        self.expect("push button", self.made[6].name)
        self.press_object("push button", self.made[6].name)
        until(lambda: self.applications.started() == f"{self.made[6].name}\n", "the started application")
        self.expect_hidden()
