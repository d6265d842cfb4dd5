// Everything that is saved goes through kep::AtomicFile. No other source has a name in it that can open a file for
// writing, or change one that is there.

#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Names that have no other meaning, wherever they stand. Headers of streams count too: kep::PlainFile reads, and does
/// not wait for pipes.
const std::set<std::string_view> names = {
    // streams
    "fstream", "ofstream", "wfstream", "wofstream", "basic_fstream", "basic_ofstream", "filebuf", "wfilebuf",
    "basic_filebuf",
    // the C library and the system
    "fopen", "fopen64", "freopen", "freopen64", "fdopen", "tmpfile", "tmpfile64", "tmpnam", "mkstemp", "mkostemp",
    "mkstemps", "mkostemps", "creat64", "openat2", "O_WRONLY", "O_RDWR", "O_CREAT", "O_TRUNC", "O_APPEND", "O_TMPFILE",
    "renameat", "renameat2", "ftruncate", "truncate64", "ftruncate64", "copy_file_range", "shm_open", "resize_file",
    "copy_file",
    // the toolkit
    "wxFile", "wxFFile", "wxTempFile", "wxTextFile", "wxFopen", "wxFileOutputStream", "wxFFileOutputStream",
    "wxTempFileOutputStream", "wxFileStream", "wxFFileStream", "wxCopyFile", "wxRenameFile", "wxConcatFiles", "wxOpen",
    "wxCRT_Open", "wxRename", "SaveFile", "AppendToFile",
    // the libraries
    "TIFFOpen", "TIFFOpenW", "TIFFOpenExt", "TIFFOpenWExt", "TIFFFdOpen", "TIFFFdOpenExt", "gzopen", "gzopen64",
    "gzdopen", "archive_write_open_filename", "archive_write_open_filename_w", "archive_write_open_file",
    "archive_write_open_fd", "archive_write_open_FILE", "archive_write_disk_new", "save_file", "png_init_io",
    "IcsOpen"};

/// Words of every day, which count where they are called.
const std::set<std::string_view> calls = {"rename", "creat", "truncate", "system", "popen"};

/// Configurations, which write their file by themselves, at the latest when they go. What is handed in by reference is
/// the host's own; what is made or asked for here counts.
const std::set<std::string_view> configurations = {"wxFileConfig", "wxConfig", "wxRegConfig", "wxConfigBase"};

/// Where a name may stand: beside the one place that opens files for writing, what cannot be told apart by its name.
const std::set<std::pair<std::string, std::string>> allowed = {
    {"core/kepcore/kep_atomicfile.cpp", "O_RDWR"}, {"core/kepcore/kep_atomicfile.cpp", "O_CREAT"},
    {"core/kepcore/kep_atomicfile.cpp", "rename"}, {"host/screenshot.cpp", "SaveFile"}, // into memory
    {"host/settingsfile.cpp", "wxFileConfig"},                                          // from and into memory
    {"host/settingsfile.h", "wxFileConfig"},
};

bool IsWordPart(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// What follows a class's name where an object of it is made, or kept, or a function of its own called.
bool MakesObject(char next) {
    return IsWordPart(next) || next == '(' || next == '{' || next == '>' || next == ':';
}

/// The names in a source that open files for writing.
std::vector<std::string> FindWriters(std::string_view source) {
    std::vector<std::string> found;
    for (std::size_t at = 0; at < source.size();) {
        std::size_t end = at;
        while (end < source.size() && IsWordPart(source[end]))
            ++end;
        const std::string_view word = source.substr(at, end - at);
        const std::size_t next = source.find_first_not_of(" \t\r\n", end);
        const char behind = next != std::string_view::npos ? source[next] : '\0';
        if (names.contains(word) || (behind == '(' && calls.contains(word)) ||
            (MakesObject(behind) && configurations.contains(word)))
            found.emplace_back(word);
        at = std::max(end, at + 1);
    }
    return found;
}

/// "file: name" for each name in the sources of a tree, tests, benchmarks and fuzzing left out. A folder of builds is
/// known by the cache in its folders.
std::vector<std::string> FindWritersInTree(const fs::path& root, std::set<std::pair<std::string, std::string>>& used,
                                           std::size_t& sources) {
    std::vector<std::string> found;
    for (auto entry = fs::recursive_directory_iterator(root); entry != fs::recursive_directory_iterator(); ++entry) {
        const std::string name = fs::relative(entry->path(), root).string();
        const std::string file = entry->path().filename().string();
        if (entry->is_directory()) {
            if (file.starts_with('.') || name == "tests" || name == "bench" || name == "fuzz" || name == "build" ||
                fs::exists(entry->path() / "CMakeCache.txt"))
                entry.disable_recursion_pending();
            continue;
        }
        const std::string suffix = entry->path().extension().string();
        if (suffix != ".cpp" && suffix != ".h" && suffix != ".cc" && suffix != ".c" && suffix != ".hpp")
            continue;
        ++sources;
        for (const std::string& writer : FindWriters(ReadBytes(entry->path().string()))) {
            if (allowed.contains({name, writer}))
                used.emplace(name, writer);
            else
                found.push_back(name + ": " + writer);
        }
    }
    return found;
}

TEST(Sources, OpenNoFileForWritingButInTheAtomicOne) {
    std::set<std::pair<std::string, std::string>> used;
    std::size_t sources = 0;
    EXPECT_THAT(FindWritersInTree(ZEL_SOURCES, used, sources), IsEmpty());
    EXPECT_EQ(used, allowed) << "what is allowed and stands nowhere any more must go from the list";
    EXPECT_GT(sources, 100U);
}

TEST(Sources, ArePlantedWithEachWayToWriteAndFound) {
    const std::pair<const char*, const char*> samples[] = {
        {"#include <fstream>\n", "fstream"},
        {"void F() { std::ofstream out(name); }", "ofstream"},
        {"using namespace std;\nofstream out;", "ofstream"},
        {"std::basic_ofstream<char> out(name);", "basic_ofstream"},
        {"std :: filebuf buffer;", "filebuf"},
        {"std::FILE* f = std::fopen(name, \"w\");", "fopen"},
        {"FILE* f = fopen(name, mode);", "fopen"},
        {"int d = ::open(name, O_WRONLY | O_CREAT | O_TRUNC, 0666);", "O_WRONLY"},
        {"int d = ::open(name, O_RDWR);", "O_RDWR"},
        {"int d = creat (name, 0666);", "creat"},
        {"::rename(a, b);", "rename"},
        {"std::filesystem::rename\n    (a, b);", "rename"},
        {"::truncate(name, 0);", "truncate"},
        {"wxFile file(name, wxFile::write);", "wxFile"},
        {"wxFFileOutputStream out(name);", "wxFFileOutputStream"},
        {"wxTextFile file;", "wxTextFile"},
        {"picture.SaveFile(name, wxBITMAP_TYPE_PNG);", "SaveFile"},
        {"TIFF* t = TIFFOpen(name, \"w\");", "TIFFOpen"},
        {"gzFile f = gzopen(name, \"wb\");", "gzopen"},
        {"document.save_file(name);", "save_file"},
        {"std::system(\"cp a b\");", "system"},
        {"wxFileConfig config(appName, vendor, fileName);", "wxFileConfig"},
        {"wxFileConfig config{appName};", "wxFileConfig"},
        {"auto* config = new wxFileConfig(appName);", "wxFileConfig"},
        {"auto config = std::make_unique<wxFileConfig>(appName);", "wxFileConfig"},
        {"wxFileConfig config;", "wxFileConfig"},
        {"class Settings : public wxFileConfig {", "wxFileConfig"},
        {"wxConfig config(\"zel\");", "wxConfig"},
        {"wxConfigBase::Get()->Write(key, value);", "wxConfigBase"},
    };
    for (const auto& [source, name] : samples)
        EXPECT_THAT(FindWriters(source), Contains(name)) << source;
}

TEST(Sources, ThatOnlySpeakOfFilesAreLeftInPeace) {
    for (const char* const source :
         {"file.Write(bytes, count);", "/// The rename puts it over the target.", "std::ifstream* in;",
          "TIFFOpenOptions* o = TIFFOpenOptionsAlloc();", "zel_truncate.h", "::open(name, O_RDONLY | O_CLOEXEC)",
          "class wxFileConfig;", "class WXDLLIMPEXP_FWD_BASE wxFileConfig;", "#include <wx/fileconf.h>",
          "void Read(wxFileConfig& config, wxFileConfig* other);", "void Write(wxConfigBase &) {", "wxFileName(name)",
          "wxFileSelector(\"Load\")", "myrename(a)", "a system that is full"})
        EXPECT_THAT(FindWriters(source), IsEmpty()) << source;
}

TEST(Sources, PlantedInATreeAreFoundInAnyFolderOfIt) {
    const ScratchFolder root;
    const auto plant = [&root](const std::string& name, const std::string& source) {
        fs::create_directories(fs::path(root / name).parent_path());
        WriteBytes(root / name, source);
    };
    plant("core/a.cpp", "std::ofstream out;");
    plant("new/deep/er/b.h", "int d = ::open(n, O_RDWR);");
    plant("core/c.txt", "std::ofstream out;");
    plant("tests/d.cpp", "std::ofstream out;");
    plant("bench/e.cpp", "std::ofstream out;");
    plant("fuzz/h.cpp", "std::ofstream out;");
    plant("core/tests/f.cpp", "fopen"); // it is the tree's own folder of tests that may write
    plant("build-there/CMakeCache.txt", "");
    plant("build-there/g.cpp", "fopen");
    std::set<std::pair<std::string, std::string>> used;
    std::size_t sources = 0;
    EXPECT_THAT(
        FindWritersInTree(root.GetPath(), used, sources),
        testing::UnorderedElementsAre("core/a.cpp: ofstream", "new/deep/er/b.h: O_RDWR", "core/tests/f.cpp: fopen"));
    EXPECT_THAT(used, IsEmpty());
    EXPECT_EQ(sources, 3U);
}

} // namespace
