// Holds back what the toolkit says while the display is being reached, for where none can be reached it says so in
// a page of its own and aborts. The program tells it in a sentence instead, and ends.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <mutex>
#include <string>
#include <vector>

namespace qrv {

/// There is no display, or it can't be reached.
inline constexpr int kNoDisplayExitCode = 2;

/// Lives while the application is made. One at a time.
class ToolkitWords {
 public:
    /// @param sentence  what stands before the toolkit's reason where no display can be reached
    explicit ToolkitWords(std::string sentence);
    /// The display is reached: what was held back is passed on, but for platforms that couldn't be loaded and aren't
    /// needed.
    ~ToolkitWords();
    ToolkitWords(const ToolkitWords&) = delete;
    ToolkitWords& operator=(const ToolkitWords&) = delete;

 private:
    struct Word {
        QtMsgType type;
        QByteArray category;
        QString text;
    };

    static void take(QtMsgType type, const QMessageLogContext& context, const QString& text);
    [[noreturn]] void end(const QString& fatal) const;
    [[nodiscard]] QString reason(const QString& fatal) const;

    std::string sentence_;
    std::mutex busy_;  ///< the toolkit's threads speak, too
    std::vector<Word> held_;
    QtMessageHandler next_;
};

}  // namespace qrv
