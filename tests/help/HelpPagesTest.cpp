#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "SourceFolder.h"
#include "fakes/TestMachine.h"
#include "help/ShowHelpTopic.h"
#include "lifecycle/frmKDLimitDesk.h"
#include "model/PropertyTable.h"

namespace kd {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const fs::path HelpFolder = fs::path(KD_SOURCE_DIR) / "help";

std::string TextOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The first group of each match.
std::vector<std::string> AllMatches(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at) {
        found.push_back((*at)[1]);
    }
    return found;
}

std::map<std::string, std::string> Pages() {
    std::map<std::string, std::string> pages;
    for (const auto& entry : fs::directory_iterator(HelpFolder)) {
        if (entry.path().extension() == ".html") {
            pages[entry.path().filename().string()] = TextOf(entry.path());
        }
    }
    return pages;
}

/// What a reader sees: without tags, each run of blanks and line ends as one blank.
std::string Shown(const std::string& html) {
    const std::string plain = std::regex_replace(html, std::regex("<[^>]*>"), " ");
    return std::regex_replace(plain, std::regex("\\s+"), " ");
}

/// Whether a page's address, with or without a place behind "#", leads somewhere; the page it stands on has
/// an empty file name.
void ExpectAddress(const std::string& address, const std::string& from) {
    const auto mark = address.find('#');
    const std::string file = mark == 0 ? from : address.substr(0, mark);
    ASSERT_TRUE(fs::is_regular_file(HelpFolder / file)) << from << " leads to " << address;
    if (mark != std::string::npos) {
        EXPECT_THAT(TextOf(HelpFolder / file), HasSubstr(" id=\"" + address.substr(mark + 1) + '"'))
            << from << " leads to " << address;
    }
}

TEST(HelpPagesTest, EveryTopicOfTheCatalogueHasItsPage) {
    const std::string catalogue = TextOf(HelpFolder / "KDLimitDeskHelp.xml");
    const auto pages = AllMatches(catalogue, "<topic name=\"[^\"]+\" page=\"([^\"]+)\"/>");
    EXPECT_GE(pages.size(), 1U);
    for (const std::string& page : pages) {
        ExpectAddress(page, "KDLimitDeskHelp.xml");
    }
    EXPECT_THAT(catalogue, HasSubstr("\"" + std::string(modKDLimitDesk::DocumentationTopic) + "\""));
}

TEST(HelpPagesTest, EveryPageIsATopic) {
    const std::string catalogue = TextOf(HelpFolder / "KDLimitDeskHelp.xml");
    for (const auto& [name, html] : Pages()) {
        EXPECT_THAT(catalogue, HasSubstr("page=\"" + name + "\""));
    }
}

TEST(HelpPagesTest, EveryLinkAndPictureLeadsSomewhere) {
    for (const auto& [name, html] : Pages()) {
        for (const std::string& address : AllMatches(html, "\\s(?:href|src)=\"([^\"]*)\"")) {
            ExpectAddress(address, name);
        }
    }
}

TEST(HelpPagesTest, EveryPageLinksAllOthers) {
    const auto pages = Pages();
    for (const auto& [name, html] : pages) {
        for (const auto& [other, ignored] : pages) {
            EXPECT_THAT(html, HasSubstr("<a href=\"" + other + "\"")) << name;
        }
    }
}

TEST(HelpPagesTest, EveryPictureIsUsedAndDescribed) {
    std::set<std::string> used;
    for (const auto& [name, html] : Pages()) {
        for (const std::string& tag : AllMatches(html, "<img\\s([^>]*)>")) {
            EXPECT_TRUE(std::regex_search(tag, std::regex("alt=\"[^\"]{10,}\""))) << name << ": " << tag;
            for (const std::string& source : AllMatches(tag, "src=\"pictures/([^\"]+)\"")) {
                used.insert(source);
            }
        }
    }
    std::uintmax_t size = 0;
    for (const auto& entry : fs::directory_iterator(HelpFolder / "pictures")) {
        EXPECT_EQ(used.count(entry.path().filename().string()), 1U) << entry.path();
        size += entry.file_size();
    }
    EXPECT_LT(size, 1'500'000U);
}

TEST(HelpPagesTest, EveryEntryOfTheMenusHasItsHeading) {
    TestMachine desk;
    const frmKDLimitDesk form(desk.g);
    const std::string html = TextOf(HelpFolder / "commands.html");
    std::size_t entries = 0;
    for (const MenuItem* menu : form.MenuBar()) {
        for (const MenuItem* entry : menu->Entries()) {
            if (entry != nullptr) {
                ++entries;
                EXPECT_TRUE(std::regex_search(
                    html,
                    std::regex("<h3[^>]*>" + std::regex_replace(entry->Caption(), std::regex("\\."), "\\.") +
                               "</h3>")))
                    << entry->Caption();
            }
        }
    }
    EXPECT_GT(entries, 10U);
}

TEST(HelpPagesTest, EveryColumnOfTheVariableSaysWhatMayStandInIt) {
    const std::string html = TextOf(HelpFolder / "commands.html");
    const auto begin = html.find("id=\"columns\"");
    ASSERT_NE(begin, std::string::npos);
    const std::string told = html.substr(begin, html.find("id=\"editing\"", begin) - begin);
    for (std::int32_t column = FirstVariableColumn; column <= ColumnCount; ++column) {
        EXPECT_TRUE(
            std::regex_search(told, std::regex("[> ]" + std::string(PropertyOf(column).title) + "[,<]")))
            << PropertyOf(column).title;
    }
}

TEST(HelpPagesTest, EveryMessageOfTheCommandsIsExplained) {
    const std::string explained = Shown(TextOf(HelpFolder / "troubleshooting.html"));
    std::size_t messages = 0;
    for (const char* folder : {"admin", "appfiles", "commit", "edit", "grid", "lifecycle", "model"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(KD_SOURCE_DIR) / "src" / folder)) {
            if (entry.path().extension() != ".cpp") {
                continue;
            }
            // What a box or a text for one begins with, and all that ends as only messages do.
            const std::string source = TextOf(entry.path());
            auto texts = AllMatches(
                source,
                "(?:(?:Say|MessageBox|RefusalText)\\((?:\\w+,)?|Text \\w+ = (?=\"[A-Z]))\\s*\"([^\"]+)\"");
            const auto exclaimed = AllMatches(source, "\"([A-Z][^\"\\n]*!)\"");
            texts.insert(texts.end(), exclaimed.begin(), exclaimed.end());
            for (const std::string& text : texts) {
                ++messages;
                EXPECT_THAT(explained, HasSubstr(text)) << entry.path();
            }
        }
    }
    EXPECT_GT(messages, 20U);
}

}  // namespace
}  // namespace kd
