// "Enter Block Number And Tag": asks what a new label of the monitor's board shows. Used by Monitor.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct Workbench;

class frmTag final : public Form {
 public:
    /// Blue, green and red from the highest byte down, as the board file keeps them.
    static constexpr std::array<std::int32_t, 8> kColours{0x000000, 0x0000FF, 0x00FFFF, 0x00FF00,
                                                          0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};

    explicit frmTag(Workbench& bench);

    void load() override;
    /// Paints the strip of colours.
    void activate() override;

    Label Label1{.caption = "Tag"};
    Label Label2{.caption = "Block Number"};
    TextBox Text1;                     ///< the tag
    TextBox Text2;                     ///< the block number
    std::int32_t Label3BackColor = 0;  ///< shows the chosen colour
    bool isPicture1Painted = false;    ///< the strip shows its colours
    Button Command1{.caption = "OK", .isDefault = true};

    // --- the answer ---
    bool cancelled = true;  ///< the window was closed, and there is none
    std::string tag;
    std::int16_t block = 0;
    std::int32_t color = 0;

    /// A mouse press on the strip.
    /// @param x, width  of the press and of the strip, in one unit
    void Picture1_MouseDown(double x, double width);
    void Command1_Click();

 private:
    Workbench& bench_;
};

}  // namespace qrv
