"""Checks the files of the sweep example with a load of 10 ohms and a limit of 1.2 A. Usage: check_sweep.py FOLDER"""

import csv
import pathlib
import sys
import unittest
import xml.etree.ElementTree as ElementTree

FOLDER = pathlib.Path(sys.argv.pop(1))
SVG = "{http://www.w3.org/2000/svg}"


class SweepFiles(unittest.TestCase):
    def test_csv_holds_every_point(self) -> None:
        with open(FOLDER / "sweep.csv", newline="", encoding="ascii") as file:
            rows = list(csv.reader(file))
        self.assertEqual(len(rows), 42)
        self.assertEqual(rows[0], ["set_V", "voltage_V", "current_A", "power_W", "mode"])
        self.assertEqual(rows[1], ["0.000", "0.000000", "0.000000", "0.000000", "CV"])
        self.assertEqual(rows[25], ["12.000", "12.000000", "1.200000", "14.400000", "CV"])
        self.assertEqual(rows[26], ["12.500", "12.000000", "1.200000", "14.400000", "CC"])
        self.assertEqual(rows[41], ["20.000", "12.000000", "1.200000", "14.400000", "CC"])

    def test_svg_shows_curves_units_limit_and_regulation(self) -> None:
        image = ElementTree.parse(FOLDER / "sweep.svg").getroot()
        self.assertEqual(image.tag, SVG + "svg")
        curves = [line.attrib["points"].split() for line in image.iter(SVG + "polyline")]
        self.assertEqual([len(points) for points in curves], [41, 41, 41])
        texts = [text.text for text in image.iter(SVG + "text")]
        for expected in (
            "TX4410, OutputChannel1",
            "Voltage, V",
            "Current, A",
            "Power, W",
            "Programmed voltage, V",
            "current limit 1.20 A",
            "constant voltage",
            "constant current",
        ):
            self.assertEqual(texts.count(expected), 1, expected)
        # The voltage follows the programmed one up to 12 V and is constant from there on: 24 steps of 15.8 pixels.
        self.assertEqual(curves[0][0], "64.0,208.0")
        self.assertEqual(curves[0][24], "443.2,96.0")
        self.assertEqual(curves[0][40], "696.0,96.0")
        # Constant current begins half-way between 12.0 V and 12.5 V, in each panel.
        shades = [rect.attrib["x"] for rect in image.iter(SVG + "rect") if "x" in rect.attrib]
        self.assertEqual(shades, ["451.1", "451.1", "451.1"])


if __name__ == "__main__":
    unittest.main()
