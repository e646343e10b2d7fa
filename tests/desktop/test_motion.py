from harness import X11Session
from launcher import LauncherTestCase


class OnKde(LauncherTestCase):
    """The launcher follows the desktop's setting for less motion."""

    def write_factor(self, factor):
        new = self.session.config / "kdeglobals.new"
        new.write_text(f"[KDE]\nAnimationDurationFactor={factor}\n", encoding="utf-8")
        new.rename(self.session.config / "kdeglobals")

    def test_a_change_of_the_setting_is_followed_while_it_runs(self):
        self.session = self.begin(X11Session(640, 480))
        self.write_factor(0)
        launcher = self.begin_launcher(XDG_CURRENT_DESKTOP="KDE", QT_LOGGING_RULES="amberquill.settings.debug=true")
        launcher.expect("amberquill.settings: less motion is asked for")
        self.write_factor(1)
        launcher.expect("amberquill.settings: full motion is asked for")
        self.write_factor(0)
        launcher.expect("amberquill.settings: less motion is asked for")
        self.assertEqual(launcher.terminate(), 0)
