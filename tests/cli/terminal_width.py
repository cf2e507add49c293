"""On a terminal, show fits its table to the terminal's width; names and types stay whole and a
cut cell ends in an ellipsis. Piped, it prints every column as wide as before (show.vav)."""

import os
import pty
import sys
import unittest

KOLVANE = sys.argv.pop(1)
PROFILE = sys.argv.pop(1)


def on_terminal(columns):
    """The lines show writes to a terminal of the given width."""
    pid, fd = pty.fork()
    if pid == 0:
        os.environ["COLUMNS"] = str(columns)
        os.execv(KOLVANE, [KOLVANE, "show", PROFILE, "-q"])
    output = b""
    while True:
        try:
            chunk = os.read(fd, 65536)
        except OSError:  # the terminal closes with the program
            break
        if not chunk:
            break
        output += chunk
    os.waitpid(pid, 0)
    return output.decode("utf-8").replace("\r\n", "\n").splitlines()


class TerminalWidthTest(unittest.TestCase):
    def test_the_table_fits_the_terminal(self):
        for columns in (100, 140):
            lines = on_terminal(columns)
            self.assertTrue(lines[0].startswith("Profile VavController"), lines[:2])
            self.assertLessEqual(max(len(line) for line in lines), columns)
            table = "\n".join(lines)
            for whole in ("nciMinFlowHeat", "temp_setpt", "hvac_status"):
                self.assertIn(whole, table)
            self.assertIn("\u2026", table)

    def test_a_wide_terminal_cuts_nothing_more(self):
        lines = on_terminal(400)
        self.assertEqual(max(len(line) for line in lines), 196)


if __name__ == "__main__":
    unittest.main()
