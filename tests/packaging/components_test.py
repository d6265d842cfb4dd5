"""Installs a build in parts and in other places: components_test.py BUILD_FOLDER ROOT."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest


def install(*options, **environment):
    command = ["cmake", "--install", build, *options]
    subprocess.run(command, env=dict(os.environ, **environment), stdout=subprocess.DEVNULL, check=True)


def files_in(folder):
    """All but folders, links as well, by their names from there."""
    return {os.path.relpath(os.path.join(here, name), folder) for here, _, names in os.walk(folder) for name in names}


def find_links(page):
    """What the links of a page in Markdown lead to, within the project; without anchors and without code."""
    text = re.sub(r"```.*?```|`[^`\n]*`|^ {4}[^\n]*$", "", page, flags=re.S | re.M)
    return [link for link in re.findall(r"\]\(([^)#]+)", text) if "://" not in link]


class Components(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.folder = pathlib.Path(scratch.name)
        install("--prefix", cls.folder / "all")
        cls.parts = {}
        for part in ("library", "development", "viewer", "documentation"):
            install("--prefix", cls.folder / part, "--component", part)
            cls.parts[part] = files_in(cls.folder / part)

    def test_each_file_is_in_one_component(self):
        together = [file for files in self.parts.values() for file in files]
        self.assertEqual(len(together), len(set(together)))
        self.assertEqual(set(together), files_in(self.folder / "all"))

    def test_the_library_is_what_programs_load(self):
        names = {re.sub(r"\d+", "N", os.path.basename(file)) for file in self.parts["library"]}
        of_each = [{f"lib{name}.so.N.N", f"lib{name}.so.N.N.N"} for name in ("kepcore", "kepalgo", "zelmodel", "zel")]
        self.assertEqual(names, set().union(*of_each))

    def test_development_is_what_hosts_are_built_with(self):
        def kind(file):
            return "header" if re.fullmatch(r"include/zel/.*\.h", file) else os.path.basename(file)

        links = {f"lib{name}.so" for name in ("kepcore", "kepalgo", "zelmodel", "zel")}
        config = {f"zel{part}.cmake" for part in ("Config", "ConfigVersion", "Targets", "Wx")}
        kinds = {kind(file) for file in self.parts["development"]}
        per_build_type = {found for found in kinds if re.fullmatch(r"zelTargets-[a-z]+\.cmake", found)}
        self.assertEqual(len(per_build_type), 1)
        self.assertEqual(kinds - per_build_type, links | config | {"header", "zel.pc"})

    def test_private_headers_stay_at_home(self):
        headers = [file for file in self.parts["development"] if file.startswith("include/")]
        rooms = "image histogram dialogs volume viewer mapping overlay factory model core/kepcore core/kepalgo"
        self.assertEqual({os.path.dirname(file) for file in headers}, {f"include/zel/{room}" for room in rooms.split()})

    def test_links_of_pages_lead_to_what_is_installed(self):
        """Or to sources, which pages speak of too: to all of the project but documentation."""
        documents = self.folder / "documentation"
        top = next(documents.rglob("CHANGELOG.md")).parent
        pages = list(top.rglob("*.md"))
        self.assertGreater(len(pages), 3)
        for page in pages:
            for link in find_links(page.read_text()):
                place = os.path.relpath(os.path.normpath(page.parent / link), top)
                is_source = (root / place).exists() and place.split("/")[0] not in ("docs", "examples")
                self.assertTrue((top / place).exists() or is_source, f"{page}: {link}")

    def test_links_are_found(self):
        page = "[a](b.md) ![c](d/e.png#f) [g](#h) [i](https://j.k) `[l](m)`\n"
        page += "```cpp\n[n](o)\n```\n    [p](q)\n[r\ns](t)\n"
        self.assertEqual(find_links(page), ["b.md", "d/e.png", "t"])

    def test_the_program_runs_where_it_was_moved_to(self):
        """DESTDIR stages an installation for another place; binaries find one another from where they lie."""
        install("--prefix", "/opt/zel of mine", DESTDIR=str(self.folder / "stage"))
        placed = self.folder / "moved"
        (self.folder / "stage/opt/zel of mine").rename(placed)
        self.assertEqual(files_in(placed), files_in(self.folder / "all"))
        environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
        command = ["ldd", placed / "bin/zelviewer"]
        said = subprocess.run(command, env=environment, capture_output=True, text=True, check=True)
        loaded = re.findall(r"lib(?:zel|zelmodel|kepcore|kepalgo)\.so\S* => (\S+)/lib", said.stdout)
        self.assertEqual(len(loaded), 4)
        self.assertEqual({os.path.realpath(path).startswith(str(placed.resolve())) for path in loaded}, {True})
        subprocess.run([placed / "bin/zelviewer", "--version"], env=environment, stdout=subprocess.DEVNULL, check=True)

    def test_pkg_config_tells_the_place_where_it_lies(self):
        placed = self.folder / "all"
        pc = next(placed.rglob("zel.pc"))
        command = ["pkg-config", "--cflags", "--libs", pc]
        said = subprocess.run(command, capture_output=True, text=True, check=True).stdout.split()
        headers = [pathlib.Path(word[2:]).resolve() for word in said if word.startswith("-I")]
        self.assertIn((placed / "include/zel").resolve(), headers)
        libraries = [pathlib.Path(word[2:]).resolve() for word in said if word.startswith("-L")]
        self.assertIn(next(placed.rglob("libzel.so")).parent.resolve(), libraries)
        self.assertLess(said.index("-lzel"), said.index("-lkepcore"))
        self.assertTrue(any("wx" in word for word in said if word.startswith("-l")), said)


if __name__ == "__main__":
    build, root = sys.argv[1], pathlib.Path(sys.argv[2])
    unittest.main(argv=sys.argv[:1])
