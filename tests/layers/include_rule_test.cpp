// Layers run one way: every project include of every production source file
// must be allowed by the table "Include rules" in docs/architecture.md, which
// this test reads, so the documentation and the check cannot drift apart.
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

const fs::path kRoot = TESK_SOURCE_DIR;

// Folders whose code may include anything: they test or measure the rest.
const std::vector<std::string> kUnchecked = {"tests/", "bench/", "fuzz/", "build"};

struct Rule {
    std::string folder;                // "ui/", "ui/gallery/"
    std::vector<std::string> allowed;  // folder prefixes it may include
};

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The texts between backticks in a table cell.
std::vector<std::string> Quoted(const std::string& cell) {
    std::vector<std::string> quoted;
    for (std::size_t open = cell.find('`'); open != std::string::npos;) {
        const std::size_t close = cell.find('`', open + 1);
        if (close == std::string::npos) break;
        quoted.push_back(cell.substr(open + 1, close - open - 1));
        open = cell.find('`', close + 1);
    }
    return quoted;
}

// The rows of the table under the heading "## Include rules": the first cell
// names a folder, the second the folders it may include, each in backticks.
std::vector<Rule> ReadRules() {
    std::istringstream doc(ReadFile(kRoot / "docs/architecture.md"));
    std::vector<Rule> rules;
    bool inSection = false;
    for (std::string line; std::getline(doc, line);) {
        if (line.rfind("## ", 0) == 0) inSection = line == "## Include rules";
        if (!inSection || line.rfind("| `", 0) != 0) continue;
        const auto bar = line.find('|', 1);
        const auto folder = Quoted(line.substr(1, bar - 1));
        if (folder.empty()) continue;
        rules.push_back(
            {folder.front(), Quoted(line.substr(bar + 1, line.find('|', bar + 1) - bar - 1))});
    }
    return rules;
}

bool StartsWith(const std::string& text, const std::string& prefix) {
    return text.rfind(prefix, 0) == 0;
}

// The most specific rule for a file ("ui/gallery/" before "ui/").
const Rule* RuleFor(const std::vector<Rule>& rules, const std::string& file) {
    const Rule* best = nullptr;
    for (const auto& rule : rules)
        if (StartsWith(file, rule.folder) && (!best || rule.folder.size() > best->folder.size()))
            best = &rule;
    return best;
}

std::vector<std::string> SourceFiles() {
    std::vector<std::string> files;
    for (auto it = fs::recursive_directory_iterator(kRoot); it != fs::end(it); ++it) {
        const std::string rel = fs::relative(it->path(), kRoot).string();
        bool skip = StartsWith(rel, ".");
        for (const auto& prefix : kUnchecked) skip = skip || StartsWith(rel, prefix);
        if (skip) {
            if (it->is_directory()) it.disable_recursion_pending();
            continue;
        }
        const std::string ext = it->path().extension().string();
        if (it->is_regular_file() && (ext == ".cpp" || ext == ".h" || ext == ".c"))
            files.push_back(rel);
    }
    return files;
}

// The project includes of a file: #include "folder/...".
std::vector<std::string> ProjectIncludes(const std::string& file) {
    std::istringstream text(ReadFile(kRoot / file));
    std::vector<std::string> includes;
    for (std::string line; std::getline(text, line);) {
        const std::size_t hash = line.find_first_not_of(" \t");
        if (hash == std::string::npos || line[hash] != '#') continue;
        const std::size_t word = line.find_first_not_of(" \t", hash + 1);
        if (word == std::string::npos || line.compare(word, 7, "include") != 0) continue;
        const std::size_t open = line.find('"', word + 7);
        const std::size_t close = open == std::string::npos ? open : line.find('"', open + 1);
        if (close == std::string::npos) continue;
        const std::string path = line.substr(open + 1, close - open - 1);
        if (path.find('/') != std::string::npos) includes.push_back(path);
    }
    return includes;
}

TEST(IncludeRule, TheTableCoversTheProductionFolders) {
    const auto rules = ReadRules();
    ASSERT_GE(rules.size(), 5u) << "no include table found in docs/architecture.md";
    for (const auto& file : SourceFiles())
        EXPECT_NE(RuleFor(rules, file), nullptr)
            << file << " lies in a folder that the include table does not list";
}

TEST(IncludeRule, NoFolderIncludesAFolderAboveIt) {
    const auto rules = ReadRules();
    for (const auto& file : SourceFiles()) {
        const Rule* rule = RuleFor(rules, file);
        if (!rule) continue;
        for (const auto& included : ProjectIncludes(file)) {
            bool allowed = false;
            for (const auto& prefix : rule->allowed)
                allowed = allowed || StartsWith(included, prefix);
            EXPECT_TRUE(allowed) << file << " includes \"" << included << "\", but " << rule->folder
                                 << " may not include that folder";
        }
    }
}

}  // namespace
