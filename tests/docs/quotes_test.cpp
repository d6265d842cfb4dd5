// Each block of C++ in docs/embedding.md stands word for word in a file that is compiled.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

const std::filesystem::path project = ZEL_PROJECT;

/// The lines of a file, without the blanks at their beginning: a quote may stand less deep than the code.
std::vector<std::string> ReadLines(const std::filesystem::path& file) {
    std::ifstream in(file);
    EXPECT_TRUE(in) << file;
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line.substr(std::min(line.find_first_not_of(' '), line.size())));
    return lines;
}

struct Quote {
    std::string file; ///< as the line before the block names it
    std::vector<std::string> lines;
};

/// Blocks that begin with ```cpp, each behind a line that ends in the name of its file in backticks and a colon.
std::vector<Quote> FindQuotes(const std::vector<std::string>& document) {
    std::vector<Quote> quotes;
    std::string file;
    bool isInside = false;
    for (const std::string& line : document) {
        if (line.starts_with("```")) {
            isInside = !isInside && line == "```cpp";
            if (isInside)
                quotes.push_back({file, {}});
        } else if (isInside) {
            quotes.back().lines.push_back(line);
        } else if (line.ends_with("`:")) {
            const std::size_t begin = line.rfind('`', line.size() - 3) + 1;
            file = line.substr(begin, line.size() - 2 - begin);
        }
    }
    return quotes;
}

} // namespace

TEST(EmbeddingDocument, QuotesCodeThatIsCompiled) {
    const std::vector<Quote> quotes = FindQuotes(ReadLines(project / "docs" / "embedding.md"));
    EXPECT_GE(quotes.size(), 8U);
    for (const Quote& quote : quotes) {
        const std::vector<std::string> code = ReadLines(project / quote.file);
        EXPECT_NE(std::search(code.begin(), code.end(), quote.lines.begin(), quote.lines.end()), code.end())
            << quote.file << " has no such lines as those from\n"
            << (quote.lines.empty() ? "" : quote.lines.front());
    }
}
