#include "link/frmTag.h"

#include <algorithm>

#include "blocks/TypedNumber.h"
#include "platform/Numerals.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr const char* kFirstTag = "Block 4";
constexpr std::int16_t kFirstBlock = 4;

std::int16_t blockFrom(const std::string& text) {
    const auto number = typedNumber(text);
    return number && *number >= 0 && *number <= kLastBlock ? toInt16(*number) : kFirstBlock;
}

}  // namespace

frmTag::frmTag(Workbench& bench) : Form("frmTag", "Enter Block Number And Tag"), bench_(bench) {}

void frmTag::load() {
    Text1.text = kFirstTag;
    Text2.text = joined(kFirstBlock);
    Label3BackColor = kColours.front();
    tag = kFirstTag;
    block = kFirstBlock;
    color = kColours.front();
    cancelled = true;
    isPicture1Painted = false;
}

void frmTag::activate() { isPicture1Painted = true; }

void frmTag::Picture1_MouseDown(double x, double width) {
    if (width <= 0) return;
    constexpr double kLast = static_cast<double>(kColours.size() - 1);
    const double box = std::clamp(x / (width / static_cast<double>(kColours.size())), 0.0, kLast);
    color = kColours.at(static_cast<std::size_t>(box));
    Label3BackColor = color;
}

void frmTag::Command1_Click() {
    tag = Text1.text;
    block = blockFrom(Text2.text);
    cancelled = false;
    bench_.platform.formHost.unload(*this);
}

}  // namespace qrv
