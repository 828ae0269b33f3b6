// The whole program with its real windows, offscreen, and a real line: our own port, the desktop's own pump, and the
// machine's clock.
#pragma once

#include <QLineEdit>
#include <string>
#include <utility>

#include "ViewRig.h"
#include "platform/Clock.h"
#include "platform/posix/PosixSerialPort.h"
#include "platform/qt/QtPump.h"

namespace qrv {

struct LiveViewRig {
    /// @param device  what every port number stands for
    explicit LiveViewRig(std::string device, const std::string& commandLine = "")
        : path(std::move(device)), line{clock, pump, port}, rig(commandLine, Extras::Shown, &line) {}

    std::string path;
    SystemClock clock;
    QtPump pump;
    PosixSerialPort port{[this](std::int16_t) { return path; }};
    LineServices line;
    ViewRig rig;
};

// Functions of the shipped catalogue: "ZERO" has an analog output, "OFF" a discrete one.
inline constexpr std::int16_t kAnalogFunction = 0;
inline constexpr std::int16_t kDiscreteFunction = 90;

inline void press(FormView& view, const char* button) { ViewRig::click<QAbstractButton>(view, button); }

inline void use(ViewRig& rig, std::int16_t block, std::int16_t function) {
    rig.program.bench.FnOfBlock.at(static_cast<std::size_t>(block)) = function;
}

inline QString cellText(const FormView& view, int row, int col) {
    return view.findChild<GridView*>(QStringLiteral("Grid2"))->model()->index(row - 1, col - 1).data().toString();
}

struct NewLabel {
    const char* block;
    const char* tag;
    int colourBox = 0;  ///< 0 to 7
};

/// Presses "Add Block" on the board of chosen outputs and answers its question.
inline void addLabel(ViewRig& rig, FormView& board, const NewLabel& label) {
    rig.whenUp("frmTag", [label](FormView& question) {
        for (const auto& [box, text] : {std::pair{"Text1", label.tag}, std::pair{"Text2", label.block}}) {
            auto* line = ViewRig::find<QLineEdit>(question, box);
            line->selectAll();
            QTest::keyClicks(line, QString::fromLatin1(text));
        }
        auto* strip = ViewRig::find<QWidget>(question, "Picture1");
        const int middle = strip->width() * (2 * label.colourBox + 1) / 16;
        QTest::mouseClick(strip, Qt::LeftButton, {}, QPoint(middle, strip->height() / 2));
        ViewRig::click<QAbstractButton>(question, "Command1");
    });
    ViewRig::click<QAbstractButton>(board, "Command1");
}

}  // namespace qrv
