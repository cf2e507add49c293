"""The catalogue generator refuses facts that contradict each other, names the type, and writes
nothing; good facts give a catalogue and a table the library's format reads."""

import json
import os
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
SCRIPT = os.path.join(ROOT, "scripts", "gen_catalogue.py")

NUMBER = {"name": "SNVT_temp_p", "index": 105, "obsolete": False, "kind": "SignedNumeric",
          "length": 2, "A": 1, "B": -2, "C": 0, "min": -273.17, "max": 327.66,
          "invalid": 327.67, "unit": "°C", "quantity": "temperature"}
ENUM = {"name": "SNVT_occupancy", "index": 109, "obsolete": False, "kind": "Enum", "length": 1,
        "A": None, "B": None, "C": None, "min": None, "max": None, "invalid": -1, "unit": "",
        "quantity": "", "enum_type": "occup_t",
        "states": [{"name": "OC_NUL", "value": -1}, {"name": "OC_OCCUPIED", "value": 0}]}
STRUCT = {"name": "SNVT_pair", "index": 200, "obsolete": False, "kind": "Struct", "length": 3,
          "A": None, "B": None, "C": None, "min": None, "max": None, "invalid": None, "unit": "",
          "quantity": "", "fields": [
              {"name": "level", "kind": "SignedNumeric", "type": "signed_long", "length": 2,
               "offset": 0, "A": 1, "B": -2, "C": 0, "min": -273.17, "max": 327.66,
               "invalid": 327.67, "unit": "°C", "same_as": ["SNVT_temp_p"]},
              {"name": "mode", "kind": "Enum", "type": "occup_t", "length": 1, "offset": 2,
               "min": None, "max": None, "invalid": -1, "states": ENUM["states"]}]}


class GeneratorTest(unittest.TestCase):
    def run_generator(self, facts):
        data = tempfile.mkdtemp()
        out = tempfile.mkdtemp()
        with open(os.path.join(data, "snvts.json"), "w", encoding="utf-8") as f:
            json.dump(facts, f)
        with open(os.path.join(data, "catalogue.json"), "w", encoding="utf-8") as f:
            json.dump({"defaults": {}, "bacnet_units": {"°C": "degrees-celsius"},
                       "field_enumerations": {}, "enumerations": {}}, f)
        with open(os.path.join(data, "user-types.xml"), "w", encoding="utf-8") as f:
            f.write("<UserTypes>\n</UserTypes>\n")
        with open(os.path.join(data, "us-units.json"), "w", encoding="utf-8") as f:
            json.dump([{"si_unit": "°C", "us_unit": "°F", "factor": 1.8, "offset": 32,
                        "differential": False, "primary": True, "exact_factor": "9/5"}], f)
        result = subprocess.run([sys.executable, SCRIPT, "--data", data, "--out", out],
                                capture_output=True, text=True)
        return result, out

    def test_contradicting_facts_stop_the_run_and_write_nothing(self):
        past_end = json.loads(json.dumps(STRUCT))
        past_end["fields"][1]["offset"] = 3
        reversed_limits = dict(NUMBER, min=400)
        no_states = dict(ENUM, states=[])
        for facts, name, words in [([NUMBER, ENUM, past_end], "SNVT_pair", "past the end"),
                                   ([reversed_limits], "SNVT_temp_p", "above maximum"),
                                   ([no_states], "SNVT_occupancy", "without states")]:
            result, out = self.run_generator(facts)
            self.assertEqual(result.returncode, 1, result.stderr)
            self.assertIn(name, result.stderr)
            self.assertIn(words, result.stderr)
            self.assertEqual(os.listdir(out), [])

    def test_good_facts_give_a_catalogue_and_a_table(self):
        result, out = self.run_generator([NUMBER, ENUM, STRUCT])
        self.assertEqual(result.returncode, 0, result.stderr)
        catalogue = ElementTree.parse(os.path.join(out, "snvts.xml")).getroot()
        pair = catalogue.find("SNVT_pair")
        self.assertEqual([(f.tag, f.text) for f in pair.find("Fields")],
                         [("level", "temp_p"), ("mode", "occupancy")])
        self.assertEqual(catalogue.find("SNVT_temp_p").findtext("BACNETUNIT"), "degrees-celsius")
        self.assertEqual(catalogue.find("SNVT_temp_p").get("INDEX"), "105")
        table = ElementTree.parse(os.path.join(out, "nvotable.xml")).getroot()
        self.assertEqual([c.tag for c in table.find("SNVT_temp_p")], ["SNVT_temp_p"])
        self.assertEqual(sorted(os.listdir(out)), ["nvotable.xml", "snvts.xml", "units.xml"])
        units = ElementTree.parse(os.path.join(out, "units.xml")).getroot()
        # The field the same as SNVT_temp_p names it, so only the standard type is listed.
        self.assertEqual([(u.tag, u.get("UNIT"), u.get("FACTOR"), u.get("OFFSET")) for u in units],
                         [("SNVT_temp_p", "°F", "9/5", "32")])

    def test_a_union_is_its_bytes_and_every_field_type_is_used(self):
        union = json.loads(json.dumps(STRUCT))
        union["name"], union["index"], union["length"] = "SNVT_choice", 201, 5
        union["fields"].append({"name": "setting", "kind": "Union", "type": "union", "length": 2,
                                "offset": 3, "fields": [
                                    {"name": "level", "kind": "UnsignedNumeric",
                                     "type": "unsigned_long", "length": 2, "offset": 0, "A": 1,
                                     "B": -1, "C": 0, "min": 0, "max": 100, "invalid": None}]})
        result, out = self.run_generator([NUMBER, ENUM, union])
        self.assertEqual(result.returncode, 0, result.stderr)
        catalogue = ElementTree.parse(os.path.join(out, "snvts.xml")).getroot()
        self.assertEqual([(f.tag, f.text) for f in catalogue.find("SNVT_choice").find("Fields")],
                         [("level", "temp_p"), ("mode", "occupancy"),
                          ("setting_0", "unsigned_short"), ("setting_1", "unsigned_short")])
        self.assertEqual(catalogue.find("SNVT_unsigned_short").findtext("MAX"), "255")
        # Nothing is made for the union's alternatives.
        self.assertIsNone(catalogue.find("SNVT_choice_setting_level"))

    def test_the_bundled_catalogue_holds_every_standard_type_and_no_orphan(self):
        catalogue = ElementTree.parse(os.path.join(ROOT, "examples", "snvts.xml")).getroot()
        with open(os.path.join(ROOT, "data", "snvts.json"), encoding="utf-8") as f:
            facts = json.load(f)
        names = {t.tag for t in catalogue}
        self.assertEqual({t["name"] for t in facts} - names, set())
        used = {f.text for t in catalogue for fields in t.findall("Fields") for f in fields}
        standard = {t.tag for t in catalogue if t.get("INDEX")}
        user = {t.tag for t in catalogue if t.tag[5:].isdigit()}
        self.assertEqual({name for name in names - standard - user if name[5:] not in used},
                         set())

    def test_the_committed_catalogue_is_the_generated_one(self):
        out = tempfile.mkdtemp()
        result = subprocess.run([sys.executable, SCRIPT, "--out", out], capture_output=True,
                                text=True)
        self.assertEqual(result.returncode, 0, result.stderr)
        for name in ("snvts.xml", "nvotable.xml", "units.xml", "scpts.xml"):
            with open(os.path.join(out, name), encoding="utf-8") as made, \
                    open(os.path.join(ROOT, "examples", name), encoding="utf-8") as committed:
                self.assertEqual(made.read(), committed.read(), name)


if __name__ == "__main__":
    unittest.main()
