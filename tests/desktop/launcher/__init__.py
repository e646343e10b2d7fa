"""The launcher under test: applications made up for it, where it must show them, and what a person sees of it."""

from launcher.applications import Application, Applications
from launcher.case import LauncherTestCase
from launcher.grid import Grid

__all__ = ["Application", "Applications", "Grid", "LauncherTestCase"]
