// The window of "Block Comments".
#pragma once

#include "blocks/FormComment.h"
#include "platform/qt/FormView.h"

namespace qrv {

class FormCommentView final : public FormView {
 public:
    FormCommentView(FormComment& form, DesktopHost& host);

 private:
    FormComment& form_;
};

}  // namespace qrv
