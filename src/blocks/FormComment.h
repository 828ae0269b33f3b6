// The two comments of a block, as long texts.
#pragma once

#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct Workbench;

class FormComment : public Form {
 public:
    /// @param mainComment  the main window's comment box, which takes the text that a block's view shows
    FormComment(Workbench& bench, TextBox& mainComment);

    TextBox Text1;  ///< the block's comment. Line breaks are "\n"
    TextBox Text2;  ///< its second comment, which is the one shown where it isn't empty

    void activate() override;
    /// Stores the text at once. It may come back shorter: the caret stays where it is.
    void Text1_Change();
    void Text2_Change();
    void mnuexit();
    bool queryUnload(UnloadMode mode) override;

 private:
    Workbench& bench_;
    TextBox& mainComment_;
};

}  // namespace qrv
