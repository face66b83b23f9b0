#include "qt/forms/AutoFilterDialog.h"

#include "qt/WindowFixture.h"

namespace kd {
namespace {

class AutoFilterDialogTest : public testing::Test {
protected:
    ScreenDesk desk;
    frmAutoFilter form{desk.g};

    void SetUp() override { desk.toolkit.Register<frmAutoFilter, AutoFilterDialog>(); }
    void Offer(const std::vector<std::pair<Text, bool>>& values) {
        for (const auto& [name, selected] : values) {
            form.Filters()->Add(name, selected);
        }
    }
    void Show(const std::function<void(QWidget&)>& user) {
        NextModal next(user);
        form.Display();
    }
    static Qt::CheckState All(QWidget& window) {
        return Find<QCheckBox>(window, "chkSelectAll").checkState();
    }
    std::vector<Text> Selected() {
        std::vector<Text> names;
        for (const auto& filter : *form.Filters()) {
            if (filter->Selected()) {
                names.push_back(filter->Name());
            }
        }
        return names;
    }
};

TEST_F(AutoFilterDialogTest, ListFillsTheDialogBetweenTheBoxAndTheButtons) {
    form.SetFormCaption("Units");
    Offer({{"kg", true}});
    Show([](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), "Units");
        EXPECT_EQ(Find<QCheckBox>(window, "chkSelectAll").text().remove('&'), "(Select All)");
        EXPECT_EQ(Find<QPushButton>(window, "cmdOk").text(), "Ok");
        EXPECT_EQ(Find<QPushButton>(window, "cmdCancel").text(), "Cancel");
        const QRect box = Find(window, "chkSelectAll").geometry();
        const QRect list = Find(window, "lstAutoFilter").geometry();
        const QRect ok = Find(window, "cmdOk").geometry();
        EXPECT_LT(box.bottom(), list.top());
        EXPECT_LT(list.bottom(), ok.top());
        EXPECT_GT(list.width(), window.width() * 8 / 10);
        EXPECT_LT(ok.right(), Find(window, "cmdCancel").geometry().left());
        EXPECT_FALSE(Find(window, "lstAutoFilter").accessibleName().isEmpty());
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, ListIsSortedByCharacterRegardlessOfCase) {
    Offer({{"b", true}, {"9", true}, {"A", true}, {"10", true}, {"(Blank)", true}, {"C", true}});
    Show([](QWidget& window) {
        EXPECT_EQ(Entries(window, "lstAutoFilter"), QStringList({"(Blank)", "10", "9", "A", "b", "C"}));
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, ListHasTheKeyboardAndNoCurrentEntryAtFirst) {
    Offer({{"a", true}, {"b", true}});
    Show([&](QWidget& window) {
        EXPECT_EQ(Focused(), &Find(window, "lstAutoFilter"));
        EXPECT_FALSE(Find<QListView>(window, "lstAutoFilter").currentIndex().isValid());
        EXPECT_EQ(form.lstAutoFilter.ListIndex(), -1);
        Press(Qt::Key_Space);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList({"a", "b"}))
            << "there is nothing to turn over";
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, TabGoesFromTheBoxOverTheListToTheButtons) {
    Offer({{"a", true}});
    Show([](QWidget& window) {
        EXPECT_EQ(TabOrder(window),
                  (std::vector<std::string>{"lstAutoFilter", "cmdOk", "cmdCancel", "chkSelectAll"}));
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, MouseTurnsTicksOverAndTheBoxFollows) {
    Offer({{"a", true}, {"b", true}, {"c", true}});
    Show([](QWidget& window) {
        EXPECT_EQ(All(window), Qt::Checked);
        ClickEntry(window, "lstAutoFilter", 1);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList({"a", "c"}));
        EXPECT_EQ(All(window), Qt::PartiallyChecked);
        ClickEntry(window, "lstAutoFilter", 0);
        ClickEntry(window, "lstAutoFilter", 2);
        EXPECT_EQ(All(window), Qt::Unchecked);
        ClickEntry(window, "lstAutoFilter", 0);
        ClickEntry(window, "lstAutoFilter", 1);
        ClickEntry(window, "lstAutoFilter", 2);
        EXPECT_EQ(All(window), Qt::Checked);
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, KeyboardAloneTurnsTicksOver) {
    Offer({{"a", true}, {"b", true}, {"c", true}});
    Show([](QWidget& window) {
        Press(Qt::Key_Down);
        Press(Qt::Key_Space);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList({"b", "c"}));
        Press(Qt::Key_End);
        Press(Qt::Key_Space);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList({"b"}));
        Press(Qt::Key_Space);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList({"b", "c"}));
        Press(Qt::Key_Return);
    });
    EXPECT_FALSE(form.Cancel());
    EXPECT_EQ(Selected(), (std::vector<Text>{"b", "c"}));
}

TEST_F(AutoFilterDialogTest, SelectAllGoesFromCheckedToClearToChecked) {
    Offer({{"a", true}, {"b", true}});
    Show([](QWidget& window) {
        auto& all = Find(window, "chkSelectAll");
        ClickMark(all);
        EXPECT_EQ(All(window), Qt::Unchecked);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList());
        ClickMark(all);
        EXPECT_EQ(All(window), Qt::Checked);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList({"a", "b"}));
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, GreySelectAllBecomesCheckedByMouseAndBySpace) {
    Offer({{"a", true}, {"b", false}});
    Show([](QWidget& window) {
        EXPECT_EQ(All(window), Qt::PartiallyChecked);
        ClickMark(Find(window, "chkSelectAll"));
        EXPECT_EQ(All(window), Qt::Checked);
        EXPECT_EQ(Ticked(window, "lstAutoFilter"), QStringList({"a", "b"}));
        ClickEntry(window, "lstAutoFilter", 0);
        ASSERT_EQ(All(window), Qt::PartiallyChecked);
        Press(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(Focused(), &Find(window, "chkSelectAll"));
        Press(Qt::Key_Space);
        EXPECT_EQ(All(window), Qt::Checked);
        Press(Qt::Key_Space);
        EXPECT_EQ(All(window), Qt::Unchecked);
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, SelectAllHasAnAccessKey) {
    Offer({{"a", true}});
    Show([](QWidget& window) {
        Press(Qt::Key_S, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return All(window) == Qt::Unchecked; }));
        window.close();
    });
}

TEST_F(AutoFilterDialogTest, EmptyListIsCheckedAndStaysSo) {
    Show([](QWidget& window) {
        EXPECT_EQ(All(window), Qt::Checked);
        ClickMark(Find(window, "chkSelectAll"));
        EXPECT_EQ(All(window), Qt::Checked);
        Press(Qt::Key_Return);
    });
    EXPECT_FALSE(form.Cancel());
}

TEST_F(AutoFilterDialogTest, OkWithNothingTickedSaysSoAndStays) {
    Offer({{"a", false}, {"b", false}});
    Modals modals;
    modals.Then("frmAutoFilter", [](QWidget& window) { Click(Find(window, "cmdOk")); })
        .ThenBox("Must have at least one selection!", QMessageBox::Warning, "KD LimitDesk")
        .Then("frmAutoFilter", [](QWidget& window) {
            EXPECT_TRUE(Find(window, "cmdOk").isEnabled());
            EXPECT_TRUE(Find(window, "cmdCancel").isEnabled());
            ClickEntry(window, "lstAutoFilter", 1);
            Click(Find(window, "cmdOk"));
        });
    form.Display();
    EXPECT_FALSE(form.Cancel());
    EXPECT_EQ(Selected(), std::vector<Text>{"b"});
}

struct Leaving {
    const char* name;
    std::function<void(QWidget&)> how;
    bool cancelled;
};

class AutoFilterDialogLeavingTest : public AutoFilterDialogTest,
                                    public testing::WithParamInterface<Leaving> {};

TEST_P(AutoFilterDialogLeavingTest, ButtonKeyOrFrameTellsWhetherItCounts) {
    Offer({{"a", true}, {"b", true}});
    Show([](QWidget& window) {
        ClickEntry(window, "lstAutoFilter", 0);
        GetParam().how(window);
        EXPECT_FALSE(window.isVisible());
    });
    EXPECT_EQ(form.Cancel(), GetParam().cancelled);
    if (!GetParam().cancelled) {
        EXPECT_EQ(Selected(), std::vector<Text>{"b"});
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, AutoFilterDialogLeavingTest,
    testing::Values(Leaving{"Ok", [](QWidget& w) { Click(Find(w, "cmdOk")); }, false},
                    Leaving{"EnterInTheList", [](QWidget&) { Press(Qt::Key_Return); }, false},
                    Leaving{"EnterOnTheBox",
                            [](QWidget& w) {
                                Find(w, "chkSelectAll").setFocus();
                                Press(Qt::Key_Return);
                            },
                            false},
                    Leaving{"EnterOnCancel",
                            [](QWidget& w) {
                                Find(w, "cmdCancel").setFocus();
                                Press(Qt::Key_Return);
                            },
                            true},
                    Leaving{"Cancel", [](QWidget& w) { Click(Find(w, "cmdCancel")); }, true},
                    Leaving{"Esc", [](QWidget&) { Press(Qt::Key_Escape); }, true},
                    Leaving{"Frame", [](QWidget& w) { w.close(); }, true}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(AutoFilterDialogTest, ListAtTheLimitIsTickedAndUntickedInOneChangeWithoutAnItemForAnEntry) {
    constexpr int Limit = 32767;
    for (int value = 0; value < Limit; ++value) {
        form.Filters()->Add("value " + std::to_string(100000 + value), true);
    }
    Show([&](QWidget& window) {
        auto& list = Find<QListView>(window, "lstAutoFilter");
        EXPECT_EQ(list.model()->rowCount(), Limit);
        EXPECT_EQ(list.model()->index(Limit - 1, 0).data().toString(), "value 132766");
        // The entries are the model's reading of the control: no widget and no object stands for one.
        EXPECT_TRUE(list.uniformItemSizes());
        EXPECT_LT(window.findChildren<QObject*>().size(), 200);
        EXPECT_EQ(list.indexWidget(list.model()->index(0, 0)), nullptr);
        int changes = 0;
        QObject::connect(list.model(), &QAbstractItemModel::dataChanged, &list, [&] { ++changes; });
        QObject::connect(list.model(), &QAbstractItemModel::modelReset, &list, [&] { changes += 1000; });
        ClickMark(Find(window, "chkSelectAll"));
        EXPECT_EQ(changes, 1);
        EXPECT_EQ(form.lstAutoFilter.SelectedCount(), 0);
        ClickMark(Find(window, "chkSelectAll"));
        EXPECT_EQ(changes, 2);
        EXPECT_EQ(form.lstAutoFilter.SelectedCount(), Limit);
        list.setFocus();
        Press(Qt::Key_End);
        changes = 0;
        Press(Qt::Key_Space);
        EXPECT_EQ(changes, 1);
        EXPECT_EQ(All(window), Qt::PartiallyChecked);
        Click(Find(window, "cmdOk"));
    });
    EXPECT_EQ(form.Filters()->Count(), Limit);
    EXPECT_EQ(form.SelectedCount(), Limit - 1);
}

}  // namespace
}  // namespace kd
