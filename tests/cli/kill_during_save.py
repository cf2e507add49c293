"""A save killed (SIGKILL) at any moment leaves the old values document or the complete new one
at the output path, never a part of one; one interrupted (SIGINT, SIGTERM) leaves no temporary
file either. The tool writes no file through a symbolic link, keeps an output's permissions, and
writes through a pipe instead of replacing it."""

import os
import random
import signal
import subprocess
import sys
import stat
import tempfile
import threading
import time
import unittest

KOLVANE = sys.argv.pop(1)


def profile_text(count):
    nvs = "".join(f'<nvo{i} Type="temp_p" Direction="Out" Key="P{i + 1}">'
                  f'<ExtendedInfo Location="{i};{i}" ExportIndex="{i}"/></nvo{i}>'
                  for i in range(count))
    cps = "".join(f"<nci{i}><SNVTType>temp_setpt</SNVTType></nci{i}>" for i in range(count // 4))
    return f"<Profile><Name>Big</Name><NVs>{nvs}</NVs><CPs>{cps}</CPs></Profile>"


class KillDuringSaveTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.profile = os.path.join(self.folder, "big.xml")
        with open(self.profile, "w") as f:
            f.write(profile_text(10000))

    def save(self, output, value, wait=True):
        command = [KOLVANE, "save", self.profile, "-o", output, "-q", "--set", f"nvo7={value}"]
        if wait:
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
            return None
        return subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def read(self, path):
        with open(path, encoding="utf-8") as f:
            return f.read()

    def test_killed_saves_leave_the_old_or_the_whole_new_document(self):
        output = os.path.join(self.folder, "values.xml")
        self.save(output, "1")
        complete = {self.read(output)}
        # What each save writes when it is left to finish.
        for value in range(2, 10):
            reference = os.path.join(self.folder, f"reference{value}.xml")
            self.save(reference, str(value))
            complete.add(self.read(reference))
        random.seed(1)
        for value in range(2, 10):
            process = self.save(output, str(value), wait=False)
            time.sleep(random.uniform(0.0, 0.6))
            process.send_signal(signal.SIGKILL)
            process.wait()
            self.assertIn(self.read(output), complete, f"after the save of {value} was killed")

    def test_no_file_is_written_through_a_symbolic_link(self):
        victim = os.path.join(self.folder, "victim.txt")
        with open(victim, "w") as f:
            f.write("keep me")
        link = os.path.join(self.folder, "link.xml")
        os.symlink(victim, link)
        self.save(link, "5")
        self.assertEqual(self.read(victim), "keep me")
        self.assertFalse(os.path.islink(link))
        self.assertIn("<ApplicationProfile>", self.read(link))


    def test_interrupted_saves_leave_no_temporary_file(self):
        output = os.path.join(self.folder, "values.xml")
        random.seed(2)
        for value, sent in enumerate([signal.SIGINT, signal.SIGTERM] * 4):
            process = self.save(output, str(value), wait=False)
            time.sleep(random.uniform(0.0, 0.6))
            process.send_signal(sent)
            process.wait()
            left = [name for name in os.listdir(self.folder) if name.startswith(".values.xml.")]
            self.assertEqual(left, [], f"after {sent.name}")

    def test_an_output_keeps_its_permissions(self):
        output = os.path.join(self.folder, "private.xml")
        with open(output, "w") as f:
            f.write("old")
        os.chmod(output, 0o600)
        self.save(output, "3")
        self.assertEqual(stat.S_IMODE(os.stat(output).st_mode), 0o600)
        self.assertIn("<ApplicationProfile>", self.read(output))

    def test_a_pipe_is_written_through(self):
        pipe = os.path.join(self.folder, "pipe")
        os.mkfifo(pipe)
        received = []
        reader = threading.Thread(target=lambda: received.append(self.read(pipe)))
        reader.start()
        self.save(pipe, "4")
        reader.join(timeout=30)
        self.assertTrue(stat.S_ISFIFO(os.lstat(pipe).st_mode))
        self.assertIn("<ApplicationProfile>", received[0])


if __name__ == "__main__":
    unittest.main()
