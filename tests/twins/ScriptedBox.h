// A message box that a test answers from a script. An unexpected box fails the test with its words; one that was
// expected and never came fails it too.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/MessageBox.h"

namespace qrv {

inline void PrintTo(const Notice& notice, std::ostream* out) {
    *out << "\"" << notice.text << "\" titled \"" << notice.title << "\", buttons " << static_cast<int>(notice.buttons)
         << ", icon " << static_cast<int>(notice.icon);
}

class ScriptedBox final : public MessageBox {
 public:
    ~ScriptedBox() override { verify(); }

    /// The next box is to be this one, and is answered so.
    void expect(Notice notice, Answer answer = Answer::Ok) {
        ASSERT_TRUE(isAmong(answer, notice.buttons)) << "the script answers with a button that isn't there";
        script_.emplace_back(std::move(notice), answer);
    }
    /// The same by its words alone, for a box with the usual title and one button.
    void expect(const std::string& text) { expect(Notice{.text = text}); }

    /// Fails for every box that was expected and has not come; called by the destructor as well.
    void verify() {
        for (const auto& [notice, answer] : script_) {
            ADD_FAILURE() << "a box never came: " << testing::PrintToString(notice);
        }
        script_.clear();
    }

    Answer ask(const Notice& notice) override {
        said.push_back(notice);
        if (script_.empty()) {
            ADD_FAILURE() << "an unexpected box: " << testing::PrintToString(notice);
            return Answer::None;
        }
        const auto [expected, answer] = script_.front();
        script_.pop_front();
        EXPECT_EQ(notice, expected);
        return isAmong(answer, notice.buttons) ? answer : Answer::None;
    }

    std::vector<Notice> said;  ///< every box so far, in order

 private:
    std::deque<std::pair<Notice, Answer>> script_;
};

}  // namespace qrv
