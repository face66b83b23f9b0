#include "qt/services/HelpIndex.h"

#include <gtest/gtest.h>

#include "base/cError.h"
#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

constexpr const char* Catalogue = "/opt/kd/help/KDLimitDeskHelp.xml";

class HelpCatalogueTest : public testing::Test {
protected:
    MemoryFiles files;
    FakeShell shell;
    HelpIndex index{files, shell};

    void Load(const char* xml, const char* path = Catalogue) {
        files.Put(path, xml);
        index.SetFileName(path);
        index.LoadIndex();
    }
};

TEST_F(HelpCatalogueTest, LoadingItAnewTakesItAsItStandsNow) {
    Load("<help><topic name=\"Moved\" page=\"old.html\"/><topic name=\"Gone\" page=\"gone.html\"/></help>");
    Load("<help><topic name=\"Moved\" page=\"new.html\"/></help>");
    index.FindTopic("Moved")->OpenTopic();
    EXPECT_EQ(shell.opened, std::vector<Text>{"file:///opt/kd/help/new.html"});
    EXPECT_EQ(index.FindTopic("Gone"), nullptr);
}

TEST_F(HelpCatalogueTest, OnlyTopicElementsAreTopics) {
    Load(
        "<help name=\"Help\" page=\"a.html\"><page name=\"Page\" page=\"b.html\"/>"
        "<topic name=\"Topic\" page=\"c.html\"/></help>");
    EXPECT_EQ(index.FindTopic("Help"), nullptr);
    EXPECT_EQ(index.FindTopic("Page"), nullptr);
    EXPECT_NE(index.FindTopic("Topic"), nullptr);
}

TEST_F(HelpCatalogueTest, PagesLieBesideItInTheRootToo) {
    Load("<help><topic name=\"Documentation\" page=\"index.html\"/></help>", "/KDLimitDeskHelp.xml");
    index.FindTopic("Documentation")->OpenTopic();
    EXPECT_EQ(shell.opened, std::vector<Text>{"file:///index.html"});
}

TEST_F(HelpCatalogueTest, AFailureSaysWhereItAroseAndNamesTheFile) {
    index.SetFileName(Catalogue);
    for (const auto number : {errFileNotFound, errDevice}) {
        SCOPED_TRACE(number);
        if (number == errDevice) {
            files.Put(Catalogue, "<help><topic name=\"Documentation\"");
        }
        try {
            index.LoadIndex();
            ADD_FAILURE() << "no error";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), number);
            EXPECT_EQ(error.Source(), "HelpIndex.LoadIndex");
            EXPECT_EQ(error.Path(), Catalogue);
            EXPECT_EQ(error.Description() == ErrorText(number), number == errFileNotFound)
                << "what is wrong with the XML is told in the reader's words";
        }
    }
}

}  // namespace
}  // namespace kd
