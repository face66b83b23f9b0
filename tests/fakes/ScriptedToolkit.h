#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/Toolkit.h"

namespace kd {

/// A toolkit that answers from a script, in order: boxes from ExpectBox, modal forms from ExpectForm, pop-up
/// menus from ExpectPopup. It fails the test on a question that nobody foresaw and on an answer that nobody
/// fetched.
class ScriptedToolkit : public Toolkit {
public:
    struct Box {
        Text text;
        BoxIcon icon;
        BoxButtons buttons;
        Text title;
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
        m_boxes.push_back({{std::move(text), icon, BoxButtons::Ok, std::move(title)}, BoxAnswer::Ok});
    }
    void ExpectQuestion(Text text, BoxIcon icon, Text title, BoxAnswer answer) {
        m_boxes.push_back({{std::move(text), icon, BoxButtons::YesNo, std::move(title)}, answer});
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

    /// What happened, in order: "box ...", "form ...", "events", "hourglass", "default".
    std::vector<std::string> log;
    /// Runs inside each pass of the message loop.
    std::function<void()> onProcessEvents;
    /// Runs each time that a job asks to be kept alive.
    std::function<void()> onKeepAlive;
    std::int32_t screenWidth = 1920;
    std::int32_t screenHeight = 1080;

    // --- Toolkit
    // --------------------------------------------------------------------------------------------

    BoxAnswer MessageBox(std::string_view text, BoxIcon icon, BoxButtons buttons,
                         std::string_view title) override {
        log.push_back("box " + Text(text));
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
    std::int32_t ScreenWidth() const override { return screenWidth; }
    std::int32_t ScreenHeight() const override { return screenHeight; }

private:
    std::deque<std::pair<Box, BoxAnswer>> m_boxes;
    std::deque<std::pair<Text, std::function<void(Form&)>>> m_forms;
    std::deque<std::function<void(MenuItem&)>> m_popups;
    Pointer m_pointer = Pointer::Default;
};

}  // namespace kd
