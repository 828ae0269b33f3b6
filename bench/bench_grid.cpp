// Refill of both block grids of a full program, painted, against a QTableWidget filled with the same texts.
// Offscreen. Both sides in one run, interleaved; the medians' ratio is what counts.
#include <QApplication>
#include <QHeaderView>
#include <QTableWidget>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Measure.h"
#include "platform/Grid.h"
#include "platform/qt/Application.h"
#include "platform/qt/GridView.h"
#include "view/OffscreenDisplay.h"

namespace {

constexpr int kRefillsEach = 5;
constexpr std::array kNames = {"PID", "AIN", "F(X)", "TIMER", "AND", "OR", "LIMIT", "RAMP", "COUNTER", "SELECT"};

struct Shape {
    const char* name;
    int rows;
    int cols;
};
constexpr std::array kShapes = {Shape{"Grid1", 61, 11}, Shape{"Ig", 16, 8}};

std::string textOf(int row, int col, int turn) {
    return kNames[static_cast<std::size_t>(row * 7 + col * 3 + turn) % kNames.size()];
}

struct Ours {
    explicit Ours(const Shape& shape) : grid(shape.name, shape.rows, shape.cols), view(grid, nullptr) {
        view.resize(700, 900);
        view.show();
    }
    void refill(int turn) {
        for (int row = 1; row < grid.rows(); ++row) {
            for (int col = 1; col < grid.cols(); ++col) grid.setText(row, col, textOf(row, col, turn));
        }
        view.refresh();
        view.viewport()->repaint();
    }
    qrv::Grid grid;
    qrv::GridView view;
};

struct Theirs {
    explicit Theirs(const Shape& shape) : table(shape.rows - 1, shape.cols - 1) {
        table.horizontalHeader()->setDefaultSectionSize(60);
        table.verticalHeader()->setDefaultSectionSize(16);
        table.resize(700, 900);
        for (int row = 0; row < table.rowCount(); ++row) {
            for (int col = 0; col < table.columnCount(); ++col) table.setItem(row, col, new QTableWidgetItem);
        }
        table.show();
    }
    void refill(int turn) {
        for (int row = 0; row < table.rowCount(); ++row) {
            for (int col = 0; col < table.columnCount(); ++col) {
                table.item(row, col)->setText(QString::fromStdString(textOf(row + 1, col + 1, turn)));
            }
        }
        table.viewport()->repaint();
    }
    QTableWidget table;
};

double millisecondsOf(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
    qrv::test::useOffscreenDisplay();
    const qrv::Application application(argc, argv);
    std::vector<std::unique_ptr<Ours>> ours;
    std::vector<std::unique_ptr<Theirs>> theirs;
    for (const Shape& shape : kShapes) {
        ours.push_back(std::make_unique<Ours>(shape));
        theirs.push_back(std::make_unique<Theirs>(shape));
    }
    QApplication::processEvents();
    int turn = 0;
    std::vector<double> oursTook;
    std::vector<double> theirsTook;
    for (int round = 0; round < qrv::kRounds; ++round) {
        for (int again = 0; again < kRefillsEach; ++again) {
            ++turn;
            oursTook.push_back(millisecondsOf([&] {
                for (auto& each : ours) each->refill(turn);
            }));
            theirsTook.push_back(millisecondsOf([&] {
                for (auto& each : theirs) each->refill(turn);
            }));
            QApplication::processEvents();
        }
    }
    const double a = qrv::medianOf(oursTook);
    const double b = qrv::medianOf(theirsTook);
    std::printf("refill of both block grids: %.2f ms, QTableWidget %.2f ms, ratio %.2f (at most 1.0)\n", a, b, a / b);
    return a <= b ? 0 : 1;
}
