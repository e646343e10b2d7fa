"""The launcher under test: applications made for it, their places on the screen, and checks of the screen."""

from launcher.applications import Application, Applications
from launcher.case import LauncherTestCase
from launcher.grid import Grid

__all__ = ["Application", "Applications", "Grid", "LauncherTestCase"]
