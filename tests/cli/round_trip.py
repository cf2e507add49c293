"""What goes in comes out: every example exported as CSV and fed back unchanged with --set-from
changes no value, in SI and in US units; a spreadsheet edit of one row changes that row only."""

import itertools
import json
import os
import subprocess
import sys
import tempfile
import unittest

KOLVANE = sys.argv.pop(1)
EXAMPLES = sys.argv.pop(1)


def run(*arguments, check=True):
    return subprocess.run([KOLVANE, *arguments, "-q"], capture_output=True, text=True, check=check)


class RoundTripTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()

    def path(self, name):
        return os.path.join(self.folder, name)

    def test_an_unchanged_export_changes_nothing(self):
        for example in ("profile.xml", "profile-vav.xml", "profile-schedules.xml"):
            profile = os.path.join(EXAMPLES, example)
            run("save", profile, "-o", self.path("plain.xml"))
            for units, form in itertools.product(("si", "us"), ("csv", "json")):
                with self.subTest(example=example, units=units, form=form):
                    exported = run("export", profile, "--units", units, "--format", form).stdout
                    with open(self.path("rows." + form), "w", encoding="utf-8") as f:
                        f.write(exported)
                    run("save", profile, "--units", units, "--set-from", self.path("rows." + form),
                        "-o", self.path("back.xml"))
                    diff = run("diff", self.path("plain.xml"), self.path("back.xml"), check=False)
                    self.assertEqual(diff.returncode, 0, diff.stdout)

    def test_an_edited_row_changes_that_value_only(self):
        profile = os.path.join(EXAMPLES, "profile.xml")
        run("save", profile, "-o", self.path("plain.xml"))
        rows = run("export", profile, "--units", "us").stdout.splitlines()
        edited = [row.replace(",70.7,", ",71.6,") if row.startswith("nciSetpoint,") else row
                  for row in rows]
        self.assertNotEqual(edited, rows)
        with open(self.path("rows.csv"), "w", encoding="utf-8") as f:
            f.write("\n".join(edited) + "\n")
        run("save", profile, "--units", "us", "--set-from", self.path("rows.csv"),
            "-o", self.path("back.xml"))
        diff = run("diff", self.path("plain.xml"), self.path("back.xml"), check=False)
        self.assertEqual(diff.returncode, 1)
        self.assertEqual([line for line in diff.stdout.splitlines() if line.startswith("~")],
                         ["~ nciSetpoint: value 21.5 °C -> 22 °C"], diff.stdout)

    def test_an_edited_json_row_changes_that_value_only(self):
        profile = os.path.join(EXAMPLES, "profile.xml")
        run("save", profile, "-o", self.path("plain.xml"))
        document = json.loads(run("export", profile, "--format", "json").stdout)
        [row] = [row for row in document["rows"] if row["path"] == "nciOccSetpoints.occupied_cool"]
        row["value"] = "24.5"
        with open(self.path("rows.json"), "w", encoding="utf-8") as f:
            json.dump(document, f)
        run("save", profile, "--set-from", self.path("rows.json"), "-o", self.path("back.xml"))
        diff = run("diff", self.path("plain.xml"), self.path("back.xml"), check=False)
        self.assertEqual([line for line in diff.stdout.splitlines() if line.startswith("~")],
                         ["~ nciOccSetpoints: value { 23  25  28  21.5  20  16 } -> { 24.5  25  28  21.5  20  16 }"],
                         diff.stdout)

    def test_a_values_document_resumes_the_edits(self):
        profile = os.path.join(EXAMPLES, "profile.xml")
        edits = ["--set", "nciSetpoint=23", "--set", "nciOccSetpoints.occupied_heat=20",
                 "--set", "nciLocation=Hall 2", "--set", "nviSpaceTemp=19.5",
                 "--set", "nviOccCmd=OC_BYPASS"]
        for form in ([], ["--interop"]):
            with self.subTest(form=form):
                run("save", profile, "-o", self.path("day1.xml"), *form, *edits)
                run("save", profile, "--values-from", self.path("day1.xml"), "-o",
                    self.path("day2.xml"), *form)
                diff = run("diff", self.path("day1.xml"), self.path("day2.xml"), check=False)
                self.assertEqual(diff.returncode, 0, diff.stdout)
                unchanged = run("diff", self.path("day1.xml"),
                                run("save", profile, "-o", self.path("plain.xml"), *form) and
                                self.path("plain.xml"), check=False)
                self.assertEqual(unchanged.returncode, 1)

    def test_a_record_of_an_item_the_profile_lacks_is_reported(self):
        with open(self.path("other.xml"), "w", encoding="utf-8") as f:
            f.write('<ApplicationProfile><ApPoint Key="P99" Name="nciGone" Value="1"/>'
                    '<ApPoint Key="" Name="nciSetpoint" Value="24"/></ApplicationProfile>')
        result = subprocess.run([KOLVANE, "save", os.path.join(EXAMPLES, "profile.xml"),
                                 "--values-from", self.path("other.xml"), "-o",
                                 self.path("out.xml")], capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("other.xml: nciGone (P99): no such item in the profile", result.stderr)
        with open(self.path("out.xml"), encoding="utf-8") as f:
            self.assertIn('Name="nciSetpoint" Direction="In" Type="temp_p" Value="24"', f.read())


if __name__ == "__main__":
    unittest.main()
