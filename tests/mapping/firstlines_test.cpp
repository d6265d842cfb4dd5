#include "mapping/text/zel_firstlines.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <wx/convauto.h>
#include <wx/log.h>
#include <wx/textfile.h>

#include <random>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class FirstLines : public testing::Test {
protected:
    /// The lines in UTF-8, or "refused" alone.
    Lines Read(const std::string& contents, std::size_t count, std::size_t longest) const {
        WriteBytes(name, contents);
        const auto lines = zel::ReadFirstLines(wxString::FromUTF8(name), count, longest);
        if (!lines)
            return {"refused"};
        Lines texts;
        for (const wxString& line : *lines)
            texts.push_back(line.utf8_string());
        return texts;
    }
    /// The same by the toolkit, which reads the whole file.
    Lines ReadByToolkit() const {
        const wxLogNull quiet;
        wxTextFile file;
        if (!file.Open(wxString::FromUTF8(name), wxConvAuto()))
            return {"refused"};
        Lines texts;
        for (std::size_t i = 0; i < file.GetLineCount(); ++i)
            texts.push_back(file[i].utf8_string());
        return texts;
    }

    ScratchFolder folder;
    std::string name = folder / "lines.txt";
};

TEST_F(FirstLines, EndWithAnyMarkOrTheFile) {
    EXPECT_EQ(Read("a\nb\r\nc\rd", 9, 9), (Lines{"a", "b", "c", "d"}));
    EXPECT_EQ(Read("\n\r\n\r", 9, 9), (Lines{"", "", ""}));
    EXPECT_EQ(Read("", 9, 9), Lines{});
    EXPECT_EQ(Read("a\n\nb\n", 9, 9), (Lines{"a", "", "b"}));
}

TEST_F(FirstLines, AreNoMoreThanAreAskedFor) {
    EXPECT_EQ(Read("a\r\nb\r\nc", 2, 9), (Lines{"a", "b"}));
    EXPECT_EQ(Read("a\nb\nc", 0, 9), Lines{});
}

TEST_F(FirstLines, LoseWhatIsTooLong) {
    EXPECT_EQ(Read("123456\n12345\n1234\n", 9, 5), (Lines{"12345", "12345", "1234"}));
    EXPECT_EQ(Read(std::string(200'000, 'x') + "\ny", 9, 3), (Lines{"xxx", "y"}));
}

TEST_F(FirstLines, AreCutBetweenCharacters) {
    // The micro sign has two bytes, the euro three, and the gothic letter four, or two words of UTF-16.
    EXPECT_EQ(Read("1234\xC2\xB5g\nb", 9, 5), (Lines{"1234", "b"}));
    EXPECT_EQ(Read("1234\xC2\xB5g\nb", 9, 6), (Lines{"1234\xC2\xB5", "b"}));
    EXPECT_EQ(Read("123\xE2\x82\xAC\nb", 9, 5), (Lines{"123", "b"}));
    EXPECT_EQ(Read("12\xF0\x90\x8C\xB0\nb", 9, 5), (Lines{"12", "b"}));
    const std::string gothic("\xFF\xFE"
                             "1\0\x00\xD8\x30\xDF\n\0b\0",
                             12);
    EXPECT_EQ(Read(gothic, 9, 4), (Lines{"1\xF0\x90\x8C\xB0", "b"})); // the mark is a word too
    EXPECT_EQ(Read(gothic, 9, 3), (Lines{"1", "b"}));
}

TEST_F(FirstLines, AreFoundOverTheBordersOfBlocks) {
    for (const std::size_t length : {65534U, 65535U, 65536U, 65537U}) {
        const std::string line(length, 'x');
        EXPECT_EQ(Read(line + "\r\nb\n", 9, 4), (Lines{"xxxx", "b"})) << length;
        EXPECT_EQ(Read(line + "\rb\n", 9, 4), (Lines{"xxxx", "b"})) << length;
    }
}

TEST_F(FirstLines, OfATextThatCannotBeDecodedAreNone) {
    EXPECT_EQ(Read("\xEF\xBB\xBF"
                   "1 2 \xFF\n3\n",
                   9, 9),
              Lines{});
    EXPECT_EQ(Read("\xEF\xBB\xBF"
                   "1 2\n3 \xFF\n",
                   1, 9),
              Lines{"1 2"}); // the bad one is not looked at
}

TEST_F(FirstLines, OfWhatCannotBeOpenedAreNone) {
    for (const std::string& other : {folder / "none", folder.GetPath(), std::string(), std::string("/dev/zero")})
        EXPECT_FALSE(zel::ReadFirstLines(wxString::FromUTF8(other), 1, 1)) << other;
}

TEST_F(FirstLines, AreThoseThatTheToolkitReads) {
    const std::vector<std::string> pieces = {"1", " ", "22", ",", "\t", "\xC2\xB5", "\xE9", "\xEF\xBB\xBF"};
    const std::vector<std::string> ends = {"\n", "\r\n", "\r"};
    const std::vector<std::string> marks = {"", "", "", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"};
    std::mt19937 random(7);
    const auto any = [&random](const std::vector<std::string>& list) { return list[random() % list.size()]; };
    for (int i = 0; i < 1000; ++i) {
        // One end of line for a file: the toolkit sees another empty line in CR, CR, LF.
        const std::string end = any(ends);
        const std::string mark = any(marks);
        std::string text;
        for (std::size_t n = random() % 30; n > 0; --n)
            text += random() % 3 == 0 ? end : any(pieces);
        if (mark.size() == 2) { // the same as words of two bytes, at times with half of one behind
            std::string words;
            for (const char c : text) {
                const bool littleFirst = mark[0] == '\xFF';
                words += littleFirst ? std::string{c, '\0'} : std::string{'\0', c};
            }
            text = words + (random() % 8 == 0 ? "\n" : "");
        }
        const Lines lines = Read(mark + text, 100, 1000);
        ASSERT_EQ(lines, ReadByToolkit()) << testing::PrintToString(mark + text);
    }
}

} // namespace
