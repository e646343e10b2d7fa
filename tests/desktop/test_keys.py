"""Real keys on the launcher and in its fields."""

from harness import until
from launcher.case import WINDOW_CLASS
from launcher.on_x11 import OnX11

# Each name is the end of the one before: a search that lost its first letters has another first result.
ENDINGS = ["abcdef", "bcdef", "cdef", "def", "ef", "f"]


class Keys(OnX11):
    def setUp(self):
        self.begin_session(1280, 720)
        names = [*ENDINGS, *(f"zz {number:02}" for number in range(1, 41))]
        self.made = [self.applications.add_entry(name, f"e{index}") for index, name in enumerate(names)]

    def expect_found(self, *names):
        """The results of a search, in order."""
        self.expect_page([application for name in names for application in self.made if application.name == name])

    def expect_start(self, name):
        started = self.applications.started()
        self.session.press("Return")
        until(lambda: self.applications.started() != started, f"the start of {name}")
        self.expect_hidden()
        self.assertEqual(self.applications.started(), f"{started}{name}\n")

    def test_letters_typed_while_it_comes_up_are_not_lost(self):
        launcher = self.begin_shown_launcher(self.made)
        for name in ENDINGS[:1] * 4:
            self.act("toggle")
            self.expect_hidden()
            self.act("toggle")
            until(lambda: self.session.focused_window() in self.session.windows_of_class(WINDOW_CLASS), "the focus")
            self.session.type(name)
            self.expect_start(name)
            self.act("toggle")
            self.window = self.session.window_of_class(WINDOW_CLASS)
        self.end_launcher(launcher)

    def test_return_starts_the_first_result_and_without_a_search_nothing(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press("Return", "KP_Enter")
        self.session.type("def")
        self.expect_found("def", "abcdef", "bcdef", "cdef")
        self.assertEqual(self.applications.started(), "")
        self.expect_start("def")
        self.end_launcher(launcher)

    def test_escape_clears_the_search_and_then_hides(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press("Right")
        self.expect_page(self.made, 1)
        self.session.type("cdef")
        self.expect_found("cdef", "abcdef", "bcdef")
        self.session.press("Escape")
        self.expect_page(self.made, 1)
        self.session.press("Left")
        self.expect_page(self.made)
        self.session.press("Escape")
        self.expect_hidden()
        self.end_launcher(launcher)

    def test_the_arrows_move_the_caret_in_a_text(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.type("f")
        self.session.press("Left")
        self.session.type("e")
        self.expect_found("ef", "abcdef", "bcdef", "cdef", "def")
        self.end_launcher(launcher)

    def test_the_edit_menus_keys_edit_the_search(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.type("abc")
        self.expect_found("abcdef")
        self.session.press("ctrl+a", "ctrl+x")
        self.expect_page(self.made)
        self.session.press("ctrl+v")
        self.expect_found("abcdef")
        self.session.type("x")
        self.expect_found()
        self.session.press("ctrl+z")
        self.expect_found("abcdef")
        self.session.press("ctrl+a", "ctrl+c", "Escape", "ctrl+v")
        self.session.type("d")
        self.expect_found("abcdef")
        self.end_launcher(launcher)

    def expect_hiding(self, *keys):
        launcher = self.begin_shown_launcher(self.made)
        self.session.press(*keys)
        self.expect_hidden()
        self.assertTrue(launcher.is_running())
        self.act("toggle")
        self.window = self.session.window_of_class(WINDOW_CLASS)
        self.expect_page(self.made)
        self.end_launcher(launcher)

    def test_control_w_hides_it(self):
        self.expect_hiding("ctrl+w")

    def test_control_h_hides_it(self):
        self.expect_hiding("ctrl+h")

    def test_control_q_quits_it(self):
        launcher = self.begin_shown_launcher(self.made)
        self.session.type("abc")
        self.session.press("ctrl+q")
        self.assertEqual(launcher.wait(), 0)
        self.assertEqual(launcher.lines, [])
        self.assertEqual(self.layout(), [str(application.path) for application in self.made])

    def test_the_menus_keys_work_in_a_cyrillic_layout_with_and_without_a_latin_one(self):
        w = 25  # its key code, the same in all layouts
        for layouts in ("ru,us", "ru"):
            with self.subTest(layouts):
                self.session.run("setxkbmap", layouts)
                self.expect_hiding(f"ctrl+{w}")
