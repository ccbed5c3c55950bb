#!/usr/bin/python3
# Walks the accessible tree of each of the program's windows as a screen
# reader finds it on the AT-SPI bus, and fails on a control that can take
# the keyboard's focus but has no name or no role, on a control that cannot
# take it (so that the keyboard cannot reach it), and on a list or table
# that does not expose its rows and columns.
# Usage: accessible-tree.py WINDOW_HOST   (inside a D-Bus session with the
# accessibility bus running, on an X display)

import subprocess
import sys
import time

import pyatspi

HOST = sys.argv[1]
# Each window, with the views in it that must expose rows (at least that many).
WINDOWS = {
    "main": {"Files found": 2},
    "options": {},
    "tester": {"Groups of the chosen match": 4},
    "tester with an error": {},
    "preview": {"Files to change": 2},
    "library": {"Library": 3},
    "batch": {},
    "extract": {},
    "about": {},
}
# Controls the keyboard works with; each must take the focus.
OPERABLE = {pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_COMBO_BOX,
            pyatspi.ROLE_TEXT, pyatspi.ROLE_ENTRY, pyatspi.ROLE_PASSWORD_TEXT, pyatspi.ROLE_SPIN_BUTTON,
            pyatspi.ROLE_LIST, pyatspi.ROLE_LIST_BOX, pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_TREE,
            pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_SLIDER, pyatspi.ROLE_PAGE_TAB}
# Parts of a view, named by their content (an empty cell is a blank).
PARTS = {pyatspi.ROLE_TABLE_CELL, pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_TREE_ITEM, pyatspi.ROLE_COLUMN_HEADER,
         pyatspi.ROLE_ROW_HEADER, pyatspi.ROLE_TABLE_ROW, pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_SCROLL_BAR}
VIEWS = {pyatspi.ROLE_LIST, pyatspi.ROLE_LIST_BOX, pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_TREE}


def application(pid, deadline):
    while time.time() < deadline:
        desktop = pyatspi.Registry.getDesktop(0)
        for app in desktop:
            try:
                if app is not None and app.get_process_id() == pid and app.childCount > 0:
                    return app
            except Exception:
                pass
        time.sleep(0.2)
    return None


def describe(node):
    path = []
    while node is not None and node.getRole() != pyatspi.ROLE_APPLICATION:
        path.append("%s '%s'" % (node.getRoleName(), node.name))
        node = node.parent
    return " < ".join(path)


def walk(node, problems, rows, depth=0):
    if depth > 40:
        return
    role = node.getRole()
    states = node.getState()
    showing = states.contains(pyatspi.STATE_SHOWING)
    if showing and role not in PARTS:
        focusable = states.contains(pyatspi.STATE_FOCUSABLE)
        if focusable and role in (pyatspi.ROLE_UNKNOWN, pyatspi.ROLE_INVALID):
            problems.append("no role: " + describe(node))
        if focusable and not node.name.strip():
            problems.append("no name: " + describe(node))
        if role in OPERABLE and states.contains(pyatspi.STATE_SENSITIVE) and not focusable:
            problems.append("not reached by the keyboard: " + describe(node))
        if role in VIEWS:
            try:
                table = node.queryTable()
                rows[node.name] = table.nRows
                if table.nColumns < 1:
                    problems.append("no columns: " + describe(node))
            except NotImplementedError:
                rows[node.name] = sum(1 for child in node if child is not None and child.getRole() in PARTS)
    for child in node:
        if child is not None:
            walk(child, problems, rows, depth + 1)


def main():
    failures = []
    for window, expected in WINDOWS.items():
        host = subprocess.Popen([HOST, window], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        try:
            if host.stdout.readline().strip() != "ready":
                failures.append("%s: the window did not open" % window)
                continue
            app = application(host.pid, time.time() + 20)
            if app is None:
                failures.append("%s: not on the accessibility bus" % window)
                continue
            time.sleep(0.5)  # the tree is complete once the window has been laid out
            problems, rows = [], {}
            walk(app, problems, rows)
            for view, least in expected.items():
                if rows.get(view, 0) < least:
                    problems.append("the view '%s' exposes %s rows, not %d" % (view, rows.get(view), least))
            print("%s: %d problem(s)" % (window, len(problems)))
            failures += ["%s: %s" % (window, p) for p in problems]
        finally:
            host.terminate()
            host.wait(10)
    for failure in failures:
        print("FAIL " + failure)
    print("%d passed, %d failed" % (len(WINDOWS) - len({f.split(":")[0] for f in failures}),
                                    len({f.split(":")[0] for f in failures})))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
