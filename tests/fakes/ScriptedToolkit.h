#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/Toolkit.h"

namespace kd {

/// A toolkit that answers from a script, in order: boxes from ExpectBox, modal forms from ExpectForm, pop-up
/// menus from ExpectPopup. It fails the test on a question that nobody foresaw and on an answer that nobody
/// fetched. After AnswerAll it does without a script.
class ScriptedToolkit : public Toolkit {
public:
    struct Box {
        Text text;
        BoxIcon icon;
        Text title;
        BoxButtons buttons = BoxButtons::Ok;

        bool operator==(const Box&) const = default;
        friend std::ostream& operator<<(std::ostream& out, const Box& box) {
            return out << "[" << box.title << "] " << box.text;
        }
    };

    ~ScriptedToolkit() override {
        EXPECT_TRUE(m_boxes.empty()) << "box not shown: " << m_boxes.front().first.text;
        EXPECT_TRUE(m_forms.empty()) << "form not shown: " << m_forms.front().first;
        EXPECT_TRUE(m_popups.empty()) << "a pop-up menu was not shown";
    }

    // --- script
    // ---------------------------------------------------------------------------------------------

    /// The next box is this one, to the letter.
    void ExpectBox(Text text, BoxIcon icon = BoxIcon::None, Text title = Text(DefaultTitle)) {
        m_boxes.push_back({{std::move(text), icon, std::move(title)}, BoxAnswer::Ok});
    }
    void ExpectQuestion(Text text, BoxIcon icon, Text title, BoxAnswer answer) {
        m_boxes.push_back({{std::move(text), icon, std::move(title), BoxButtons::YesNo}, answer});
    }
    /// The next modal form has this name; `user` does what the user does, and ends with the form hidden.
    void ExpectForm(Text name, std::function<void(Form&)> user) {
        m_forms.push_back({std::move(name), std::move(user)});
    }
    template <typename F>
    void ExpectForm(Text name, std::function<void(F&)> user) {
        ExpectForm(std::move(name), [user = std::move(user)](Form& form) { user(dynamic_cast<F&>(form)); });
    }
    void ExpectPopup(std::function<void(MenuItem&)> user) { m_popups.push_back(std::move(user)); }
    /// From now on every box is confirmed and every form left to `user`: for runs in which nobody foresees
    /// which ones come.
    void AnswerAll(std::function<void(Form&)> user) { m_answerAll = std::move(user); }

    /// What happened, in order: "box ...", "form ...", "events", "hourglass", "default".
    std::vector<std::string> log;
    /// The boxes shown so far.
    std::vector<Box> boxes;
    /// Runs inside each pass of the message loop.
    std::function<void()> onProcessEvents;
    /// Runs each time that a job asks to be kept alive.
    std::function<void()> onKeepAlive;

    // --- Toolkit
    // --------------------------------------------------------------------------------------------

    BoxAnswer MessageBox(std::string_view text, BoxIcon icon, BoxButtons buttons,
                         std::string_view title) override {
        log.push_back("box " + Text(text));
        boxes.push_back({Text(text), icon, Text(title), buttons});
        if (m_answerAll) {
            return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
        }
        if (m_boxes.empty()) {
            ADD_FAILURE() << "unforeseen box: " << text;
            return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
        }
        const auto [box, answer] = m_boxes.front();
        m_boxes.pop_front();
        EXPECT_EQ(text, box.text);
        EXPECT_EQ(title, box.title);
        EXPECT_EQ(static_cast<int>(icon), static_cast<int>(box.icon)) << "icon of: " << text;
        EXPECT_EQ(static_cast<int>(buttons), static_cast<int>(box.buttons)) << "buttons of: " << text;
        return answer;
    }
    void ShowModal(Form& form) override {
        log.push_back("form " + form.Name());
        if (m_answerAll) {
            form.MarkShown();
            m_answerAll(form);
            return;
        }
        if (m_forms.empty()) {
            ADD_FAILURE() << "unforeseen form: " << form.Name();
            // A command that shows its form until it is content would never end.
            throw std::logic_error("unforeseen form");
        }
        const auto [name, user] = std::move(m_forms.front());
        m_forms.pop_front();
        EXPECT_EQ(form.Name(), name);
        form.MarkShown();
        user(form);
        EXPECT_FALSE(form.Shown()) << form.Name() << " is still shown";
    }
    void ShowModeless(Form& form) override {
        log.push_back("show " + form.Name());
        form.MarkShown();
    }
    void ShowPopupMenu(MenuItem& menu) override {
        log.push_back("popup " + menu.Name());
        if (m_popups.empty()) {
            ADD_FAILURE() << "unforeseen pop-up menu: " << menu.Name();
            return;
        }
        const auto user = std::move(m_popups.front());
        m_popups.pop_front();
        user(menu);
    }
    void ProcessEvents() override {
        log.emplace_back("events");
        if (onProcessEvents) {
            onProcessEvents();
        }
    }
    void KeepAlive() override {
        if (onKeepAlive) {
            onKeepAlive();
        }
    }
    Pointer MousePointer() const override { return m_pointer; }
    void SetMousePointer(Pointer pointer) override {
        m_pointer = pointer;
        log.emplace_back(pointer == Pointer::Hourglass ? "hourglass" : "default");
    }

private:
    std::deque<std::pair<Box, BoxAnswer>> m_boxes;
    std::deque<std::pair<Text, std::function<void(Form&)>>> m_forms;
    std::deque<std::function<void(MenuItem&)>> m_popups;
    std::function<void(Form&)> m_answerAll;
    Pointer m_pointer = Pointer::Default;
};

}  // namespace kd
