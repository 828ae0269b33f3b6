// The small controls of a form as plain data: what the user sees of a list, a box, a button, a menu entry. A view
// copies them to its widgets and back; a test reads and sets them. Data texts (lists, boxes) are code page 1252 unless
// the form says otherwise; captions are UTF-8.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace qrv {

/// A list or drop-down: entries in order, the chosen one by index from 0, -1 for none.
struct ListBox {
    std::vector<std::string> items{};
    int listIndex = -1;
    bool visible = true;
    bool enabled = true;
    std::vector<std::string> toolTips{};  ///< one for each entry, or empty

    [[nodiscard]] std::string text() const {
        return listIndex >= 0 && listIndex < static_cast<int>(items.size()) ? items[static_cast<std::size_t>(listIndex)]
                                                                            : std::string{};
    }
};

struct TextBox {
    std::string text{};
    bool visible = true;
    bool enabled = true;
    bool locked = false;  ///< shows, but takes no typing
    int maxLength = 0;    ///< characters; 0 for no limit
};

struct Label {
    std::string caption{};
    bool visible = true;
};

struct Button {
    std::string caption{};
    bool visible = true;
    bool enabled = true;
    bool isDefault = false;
};

/// A check box or option button.
struct Choice {
    std::string caption{};
    bool value = false;
    bool visible = true;
    bool enabled = true;
};

/// Ticks each interval while it is enabled: the view calls the form's tick routine.
struct Timer {
    std::chrono::milliseconds interval{0};
    bool enabled = false;
};

/// A menu entry; "-" is a separator.
struct MenuEntry {
    std::string name{};     ///< as `mnuFileSave`; element i of a control array has i behind the name
    std::string caption{};  ///< with "&" before the mnemonic, unless there is a tag
    bool visible = true;
    bool enabled = true;
    std::string tag{};  ///< what the entry stands for: a path, which the caption shows as it is
};

}  // namespace qrv
