# Reads the demo's accessible tree as a screen reader does, through the AT-SPI registry,
# and checks the title bar: five push buttons found by their names, each with a
# description and a press action; then presses the close button through the action
# interface. Exit 0 when everything holds, 1 with a line saying what did not.
import sys
import time

import pyatspi

APPLICATION = sys.argv[1]
EXPECTED = ["Feedback", "Menu", "Minimise", "Maximise", "Close"]


def find_application(timeout):
    deadline = time.time() + timeout
    while time.time() < deadline:
        for app in pyatspi.Registry.getDesktop(0):
            if app is not None and app.name == APPLICATION:
                return app
        time.sleep(0.2)
    names = [a.name for a in pyatspi.Registry.getDesktop(0) if a is not None]
    print("atspi: no application named %r on the registry (it has %r)" % (APPLICATION, names))
    return None


def push_buttons(node, found):
    try:
        role = node.getRole()
    except Exception:
        return
    if role == pyatspi.ROLE_PUSH_BUTTON:
        found.setdefault(node.name, node)
    for child in node:
        if child is not None:
            push_buttons(child, found)


app = find_application(20)
if app is None:
    sys.exit(1)
buttons = {}
push_buttons(app, buttons)
missing = [name for name in EXPECTED if name not in buttons]
if missing:
    print("atspi: no push button named %r; push buttons: %r" % (missing, sorted(buttons)))
    sys.exit(1)
for name in EXPECTED:
    button = buttons[name]
    if not button.description:
        print("atspi: the %r button has no description" % name)
        sys.exit(1)
    action = button.queryAction()
    names = [action.getName(i) for i in range(action.nActions)]
    if "Press" not in names and "press" not in names:
        print("atspi: the %r button has no press action (%r)" % (name, names))
        sys.exit(1)
    print("atspi: %s: %r" % (name, button.description))
close = buttons["Close"].queryAction()
names = [close.getName(i) for i in range(close.nActions)]
close.doAction(names.index("Press") if "Press" in names else names.index("press"))
print("atspi: pressed Close")
