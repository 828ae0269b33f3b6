// Makes the logo picture that the splash window shows, from its drawing. Used by the build.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

namespace {

constexpr int kScale = 2;     // drawn at twice its size, so that it is sharp on a fine screen
constexpr int kQuality = 92;  // of 100

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: qrv_make_logo DRAWING.svg PICTURE.jpg\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    if (!drawing.isValid()) {
        std::fprintf(stderr, "%s is no drawing\n", argv[1]);
        return 3;
    }
    QImage picture(drawing.defaultSize() * kScale, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    if (picture.save(QString::fromLocal8Bit(argv[2]), "JPG", kQuality)) return 0;
    std::fprintf(stderr, "%s could not be written\n", argv[2]);
    return 3;
}
