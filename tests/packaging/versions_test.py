"""All that names the version and the day of the newest release agrees: versions_test.py ROOT VERSION."""

import email.utils
import pathlib
import re
import sys
import unittest
import xml.etree.ElementTree


def read_manual(text):
    """(version, day) of the line with the title of a manual page."""
    title = re.match(r'\.TH ZELVIEWER 1 (\S+) "zel (\S+)"', text)
    return title[2], title[1]


def read_metainfo(text):
    newest = xml.etree.ElementTree.fromstring(text).find("releases/release")
    return newest.get("version"), newest.get("date")


def read_changelog(text):
    """(version without its Debian revision, day) of the newest entry."""
    version = re.match(r"zel \((.+)-[^-]+\) ", text)[1]
    day = email.utils.parsedate_to_datetime(re.search(r"^ -- .*>  (.*)$", text, re.M)[1])
    return version, day.date().isoformat()


class Versions(unittest.TestCase):
    def test_they_agree(self):
        packaging = root / "packaging"
        manual = read_manual((packaging / "zelviewer.1").read_text())
        self.assertEqual(manual[0], version)
        self.assertEqual(read_metainfo((packaging / "org.zel.zelviewer.metainfo.xml").read_text()), manual)
        self.assertEqual(read_changelog((packaging / "debian/changelog").read_text()), manual)

    def test_the_newest_entries_are_read(self):
        self.assertEqual(read_manual('.TH ZELVIEWER 1 2031-02-03 "zel 7.8.9" "x"\n'), ("7.8.9", "2031-02-03"))
        releases = '<release version="7.8.9" date="2031-02-03"/><release version="1.0.0" date="2030-01-01"/>'
        self.assertEqual(
            read_metainfo(f"<component><releases>{releases}</releases></component>"), ("7.8.9", "2031-02-03")
        )
        entry = "zel ({}) unstable; urgency=low\n\n  * x\n\n -- N <n@n>  {} +0100\n\n"
        newest = entry.format("7.8.9-2", "Mon, 03 Feb 2031 10:00:00")
        older = entry.format("1.0-1", "Tue, 01 Jan 2030 00:00:00")
        self.assertEqual(read_changelog(newest + older), ("7.8.9", "2031-02-03"))


if __name__ == "__main__":
    root, version = pathlib.Path(sys.argv[1]), sys.argv[2]
    unittest.main(argv=sys.argv[:1])
