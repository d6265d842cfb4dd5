"""Which types a desktop gives to files where the package is installed: mimetypes_test.py MIME_PACKAGE.

The database is made in a scratch folder; the system's own stays behind it.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HEADER = b"\t\nics_version\t2.0\nfilename\tx\n"


class MimeTypes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.folder = pathlib.Path(scratch.name)
        cls.data = cls.folder / "data"
        (cls.data / "mime/packages").mkdir(parents=True)
        shutil.copy(package, cls.data / "mime/packages")
        environment = dict(os.environ, XDG_DATA_HOME=str(cls.data))
        command = ["update-mime-database", cls.data / "mime"]
        run = subprocess.run(command, env=environment, capture_output=True, text=True, check=True)
        if run.stderr:
            raise AssertionError(run.stderr)

    def type_of(self, name, content, with_package=True):
        file = self.folder / name
        file.write_bytes(content)
        environment = dict(os.environ, XDG_DATA_DIRS="/usr/local/share:/usr/share", LC_ALL="C")
        environment["XDG_DATA_HOME"] = str(self.data if with_package else self.folder / "none")
        command = ["gio", "info", "-a", "standard::content-type", file]
        run = subprocess.run(command, env=environment, capture_output=True, text=True, check=True)
        return run.stdout.split("standard::content-type: ")[1].strip()

    def test_images_of_ics(self):
        self.assertEqual(self.type_of("image.ics", HEADER), "image/x-ics")
        self.assertEqual(self.type_of("image.ICS", HEADER.replace(b"\n", b"\r\n")), "image/x-ics")

    def test_it_is_the_package_that_knows_them(self):
        self.assertNotEqual(self.type_of("image.ics", HEADER, with_package=False), "image/x-ics")

    def test_separators_of_other_kinds(self):
        self.assertEqual(self.type_of("image.ics", b" \nics_version 1.0\n"), "image/x-ics")
        self.assertEqual(self.type_of("image.ics", b"\t;\nics_version\t1.0;"), "image/x-ics")

    def test_calendars_stay_calendars(self):
        calendar = b"BEGIN:VCALENDAR\r\nVERSION:2.0\r\nSUMMARY:ics_version\r\nEND:VCALENDAR\r\n"
        self.assertEqual(self.type_of("calendar.ics", calendar), "text/calendar")
        self.assertEqual(self.type_of("without-ending", calendar), "text/calendar")

    def test_neither_stays_what_it_was(self):
        for content in (b"", b"something else\n"):
            without = self.type_of("other.ics", content, with_package=False)
            self.assertEqual(self.type_of("other.ics", content), without, content)

    def test_images_without_the_ending(self):
        self.assertEqual(self.type_of("image", HEADER), "image/x-ics")

    def test_voxels_beside_a_header_are_no_image_to_open(self):
        self.assertEqual(self.type_of("image.ids", bytes(range(200))), "application/x-ics-data")

    def test_tiff_images(self):
        self.assertEqual(self.type_of("image.tif", b"II*\0\x08\0\0\0"), "image/tiff")


if __name__ == "__main__":
    package = sys.argv[1]
    unittest.main(argv=sys.argv[:1])
