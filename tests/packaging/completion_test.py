"""Runs the completion in bash: completion_test.py SCRIPT."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest


def complete(*words):
    """What bash offers for the last word."""
    driver = pathlib.Path(__file__).parent / "complete.bash"
    run = subprocess.run(
        ["bash", "--norc", driver, script, "zelviewer", *words], capture_output=True, text=True, check=True
    )
    if run.stderr:
        raise AssertionError(run.stderr)
    return sorted(run.stdout.splitlines())


class Completion(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)
        for name in ("a b.tif", "b.TIFF", "c.ics", "c.ids", "d.png", "e.gif", "f.zelview", "g.txt"):
            pathlib.Path(name).touch()
        pathlib.Path("sub").mkdir()

    def test_options_by_their_beginning(self):
        self.assertEqual(complete("--save"), ["--save-film", "--save-gallery", "--save-view"])
        self.assertEqual(complete("--chan"), ["--channel", "--channels"])
        self.assertIn("-h", complete("-"))

    def test_fixed_values(self):
        self.assertEqual(complete("--type", "g"), ["gray16", "gray8"])
        self.assertEqual(complete("--stretch", ""), ["equalize", "linear", "none", "percentil"])
        self.assertEqual(complete("x.tif", "--part", "i"), ["imaginary"])

    def test_values_behind_an_equals_sign(self):
        self.assertEqual(complete("--type", "=", "rgb"), ["rgb", "rgb16"])
        self.assertEqual(complete("--screenshot", "=", ""), ["d.png", "sub"])

    def test_lists_of_windows(self):
        self.assertEqual(complete("--windows", ""), ["xy", "xz", "yz"])
        self.assertEqual(complete("--windows", "xy,"), ["xy,xz", "xy,yz"])
        self.assertEqual(complete("--windows", "yz,x"), ["yz,xy", "yz,xz"])
        self.assertEqual(complete("--windows", "xy,xz,yz,"), [])

    def test_images_and_folders_without_an_option(self):
        self.assertEqual(complete(""), ["a b.tif", "b.TIFF", "c.ics", "sub"])
        self.assertEqual(complete("--voxels", "c"), ["c.ics"])
        self.assertEqual(complete("--labels", "c.ics", ""), ["a b.tif", "b.TIFF", "c.ics", "sub"])

    def test_images_alone_behind_two_dashes(self):
        self.assertEqual(complete("--", "c"), ["c.ics"])
        self.assertEqual(complete("--", "--ty"), [])

    def test_files_of_the_kind_that_an_option_takes(self):
        self.assertEqual(complete("--view", ""), ["f.zelview", "sub"])
        self.assertEqual(complete("--save-film", ""), ["e.gif", "sub"])
        self.assertEqual(complete("--save-view", ""), ["a b.tif", "b.TIFF", "c.ics", "d.png", "sub"])
        self.assertEqual(complete("--labels", ""), ["a b.tif", "b.TIFF", "c.ics", "sub"])
        self.assertEqual(complete("--export-meshes", ""), ["sub"])

    def test_nothing_for_numbers_of_ones_own(self):
        for option in ("--channel", "--resolution", "--slices", "--fps", "--frames"):
            self.assertEqual(complete(option, ""), [], option)


if __name__ == "__main__":
    script = pathlib.Path(sys.argv[1]).resolve()
    unittest.main(argv=sys.argv[:1])
