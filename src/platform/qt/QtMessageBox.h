// The desktop's message boxes.
#pragma once

#include "platform/MessageBox.h"

namespace qrv {

class QtMessageBox final : public MessageBox {
 public:
    /// Esc and the close box answer Cancel where there is one, else No, else OK.
    Answer ask(const Notice& notice) override;
};

}  // namespace qrv
