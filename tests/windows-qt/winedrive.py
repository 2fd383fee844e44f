"""What the windows-qt lane's display cases share: failures gathered rather than raised,
and a case run on the lane's Xvfb with its outcome as the exit code."""
import os
import subprocess
import sys

TOLERANCE = 2
FAILURES = []


def fail(text):
    FAILURES.append(text)
    print("FAIL: " + text, flush=True)


def check(condition, text):
    if not condition:
        fail(text)
    return condition


def near(a, b):
    return abs(a - b) <= TOLERANCE


def run_case(cases, case, *arguments, errors=(RuntimeError,)):
    """Runs cases[case](*arguments) and returns the exit code: 0 passed, 1 failed, 77 skipped
    (no display)."""
    if not os.environ.get("DISPLAY"):
        print("SKIPPED: no DISPLAY; this runs inside the windows-qt lane's Xvfb")
        return 77
    try:
        cases[case](*arguments)
    except errors as error:
        fail(str(error))
    if FAILURES:
        print("%s: %d failure(s)" % (case, len(FAILURES)))
        return 1
    print("%s: passed" % case)
    return 0


def usage(doc):
    print(doc, file=sys.stderr)
    return 2


def xdotool_output(*args):
    return subprocess.run(["xdotool"] + [str(a) for a in args], check=False,
                          capture_output=True, text=True).stdout
