"""A simple screen reader, run as a program of the session:

    reader.py tree              the launcher's objects, as JSON
    reader.py press ROLE NAME   presses the object of that role and name; ends with 1 where there is none that can be
                                pressed, with 2 where it does not take it
    reader.py menus             reads out each menu that comes up: the titles of its entries, those of its submenus in
                                brackets, "*" after what is checked, "!" after what is disabled
"""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

DEEPEST = 30
# The file dialogs' roles, whose rows change while they are read.
LISTS = (Atspi.Role.LIST, Atspi.Role.TREE, Atspi.Role.TREE_TABLE)
STATES = ("showing", "visible", "focusable", "focused", "selected", "selectable", "editable", "pressed", "single_line")


def launcher():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application and application.get_name() in ("Amberquill", "amberquill"):
            return application
    return None


def objects(top, depth=0):
    """All objects below one, in order."""
    if top is None or depth > DEEPEST:
        return
    yield top
    if top.get_role() in LISTS:
        return
    for index in range(top.get_child_count()):
        yield from objects(top.get_child_at_index(index), depth + 1)


def described(each):
    states = each.get_state_set()
    place = each.get_extents(Atspi.CoordType.SCREEN) if each.get_component_iface() else None
    return {
        "role": each.get_role_name(),
        "name": each.get_name(),
        "states": [name for name in STATES if states.contains(getattr(Atspi.StateType, name.upper()))],
        "actions": [each.get_action_name(number) for number in range(each.get_n_actions())]
        if each.get_action_iface()
        else [],
        "place": [place.x, place.y, place.width, place.height] if place else None,
        "text": Atspi.Text.get_text(each, 0, -1) if each.get_text_iface() else None,
    }


def press(role, name):
    for each in objects(launcher()):
        if each.get_role_name() == role and each.get_name() == name:
            for number in range(each.get_n_actions()):
                if each.get_action_name(number).lower() == "press":
                    return 0 if each.do_action(number) else 2
    return 1


def titles(menu):
    """The titles of all entries below a menu."""
    read = []
    for index in range(menu.get_child_count()):
        entry = menu.get_child_at_index(index)
        states = entry.get_state_set()
        # A heading is a separator with a title.
        title = entry.get_name() or "-"
        if entry.get_role() != Atspi.Role.SEPARATOR:
            title += "" if states.contains(Atspi.StateType.ENABLED) else "!"
            title += "*" if states.contains(Atspi.StateType.CHECKED) else ""
        if entry.get_child_count() > 0:
            title += f" [{titles(entry.get_child_at_index(0))}]"
        read.append(title)
    return ", ".join(read)


def read_out(event):
    source = event.source
    if event.detail1 == 1 and source.get_role() == Atspi.Role.POPUP_MENU:
        print(f"menu {titles(source)}", flush=True)


def follow_menus():
    listener = Atspi.EventListener.new(read_out)
    listener.register("object:state-changed:showing")
    print("ready", flush=True)
    Atspi.event_main()


def main():
    if sys.argv[1] == "menus":
        follow_menus()
        return 0
    if sys.argv[1] == "tree":
        print(json.dumps([described(each) for each in objects(launcher())]))
        return 0
    return press(*sys.argv[2:])


if __name__ == "__main__":
    sys.exit(main())
