"""The schemas in schemas/ describe what Kolvane reads and writes: every bundled file, every values
document the tool writes and every profile it imports from a real device validates; a document
with a misspelt attribute, a bad flag, a malformed location or an unknown kind of type does not."""

import glob
import os
import subprocess
import sys
import tempfile
import unittest

XMLLINT = sys.argv.pop(1)
KOLVANE = sys.argv.pop(1)
SOURCE = sys.argv.pop(1)
SCHEMAS = os.path.join(SOURCE, "schemas")
EXAMPLES = os.path.join(SOURCE, "examples")


def lint(document, schema):
    return subprocess.run([XMLLINT, "--noout", "--schema", os.path.join(SCHEMAS, schema), document],
                          capture_output=True, text=True)


class SchemaTest(unittest.TestCase):
    def assertValid(self, document, schema):
        result = lint(document, schema)
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_bundled_files_validate(self):
        for name, schema in (("snvts.xml", "catalogue.xsd"), ("nvotable.xml", "nvotable.xsd"),
                             ("units.xml", "units.xsd"), ("scpts.xml", "scpts.xsd")):
            with self.subTest(name=name):
                self.assertValid(os.path.join(EXAMPLES, name), schema)
        for profile in sorted(glob.glob(os.path.join(EXAMPLES, "profile*.xml"))):
            with self.subTest(name=os.path.basename(profile)):
                self.assertValid(profile, "profile.xsd")

    def test_written_documents_validate(self):
        folder = tempfile.mkdtemp()
        for profile in sorted(glob.glob(os.path.join(EXAMPLES, "profile*.xml"))):
            for mode in ([], ["--interop"]):
                with self.subTest(name=os.path.basename(profile), mode=mode):
                    written = os.path.join(folder, "values.xml")
                    subprocess.run([KOLVANE, "save", profile, "-o", written, "-q", *mode], check=True)
                    self.assertValid(written, "values.xsd")
        devices = sorted(glob.glob(os.path.join(SOURCE, "tests", "data", "xif", "*.[xX][iI][fF]")))
        self.assertGreater(len(devices), 10)
        for device in devices:
            with self.subTest(name=os.path.basename(device)):
                written = os.path.join(folder, "imported.xml")
                subprocess.run([KOLVANE, "xif", "import", device, "-o", written, "-q"], check=True)
                self.assertValid(written, "profile.xsd")

    def test_faults_are_refused(self):
        folder = tempfile.mkdtemp()
        values = os.path.join(SOURCE, "tests", "cli", "expected", "values.xml")
        self.assertValid(values, "values.xsd")
        for source, schema, before, after in (
                (values, "values.xsd", ' Direction="In"', ' Directon="In"'),
                (values, "values.xsd", ' Permanent="1"', ' Permanent="yes"'),
                (os.path.join(EXAMPLES, "profile.xml"), "profile.xsd", 'Location="40;60"', 'Location="40/60"'),
                (os.path.join(EXAMPLES, "snvts.xml"), "catalogue.xsd", '<TYPE>Float</TYPE>', '<TYPE>Real</TYPE>')):
            with self.subTest(schema=schema, fault=after):
                with open(source, encoding="utf-8") as f:
                    text = f.read()
                self.assertTrue(before in text, before)
                bad = os.path.join(folder, os.path.basename(source))
                with open(bad, "w", encoding="utf-8") as f:
                    f.write(text.replace(before, after, 1))
                self.assertNotEqual(lint(bad, schema).returncode, 0)

if __name__ == "__main__":
    unittest.main()
