// Every question and notice of the tool goes through this interface: the desktop shows a window, the terminal program
// answers by its own rules, a test answers from a script and reads what was said.
#pragma once

#include <string>

namespace qrv {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Icon { None, Warning, Question, Information, Critical };
/// None: nobody could answer. It is never among the buttons, so that no `if (yes)` runs unasked.
enum class Answer { None, Ok, Cancel, Yes, No };

/// The title of a box unless something else is told.
inline constexpr const char* kUsualTitle = "Warning!";

/// One box. Texts are UTF-8; a line break is "\n".
struct Notice {
    std::string text;
    std::string title = kUsualTitle;
    Buttons buttons = Buttons::Ok;
    Icon icon = Icon::None;

    friend bool operator==(const Notice&, const Notice&) = default;
};

/// True if `answer` is one of the buttons that `buttons` shows.
[[nodiscard]] constexpr bool isAmong(Answer answer, Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok: return answer == Answer::Ok;
        case Buttons::OkCancel: return answer == Answer::Ok || answer == Answer::Cancel;
        case Buttons::YesNo: return answer == Answer::Yes || answer == Answer::No;
        case Buttons::YesNoCancel: return answer == Answer::Yes || answer == Answer::No || answer == Answer::Cancel;
    }
    return false;
}

class MessageBox {
 public:
    virtual ~MessageBox() = default;

    /// Shows the box and waits for the answer: one of the box's buttons, or Answer::None where nobody can answer.
    virtual Answer ask(const Notice& notice) = 0;

    /// A box with one button, where the answer says nothing.
    void say(const std::string& text) { ask({.text = text}); }
    void say(const std::string& text, const std::string& title) { ask({.text = text, .title = title}); }
};

}  // namespace qrv
