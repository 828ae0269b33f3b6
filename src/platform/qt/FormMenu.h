// A menu of entries that a form declares. Their captions are the form's, and entries that can't be chosen may have the
// letter of one that can: this menu passes over them, where the toolkit's stops at each.
#pragma once

#include <QMenu>

namespace qrv {

class FormMenu final : public QMenu {
 public:
    using QMenu::QMenu;

 protected:
    void keyPressEvent(QKeyEvent* event) override;

 private:
    /// The only entry that can be chosen by the key's letter; null where there is none or more than one.
    [[nodiscard]] QAction* onlyChoice(const QKeyEvent& key) const;
};

}  // namespace qrv
