#include "platform/qt/ToolkitWords.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace qrv {

namespace {

/// The toolkit calls a plain function.
ToolkitWords*& holder() {
    static ToolkitWords* current = nullptr;
    return current;
}

}  // namespace

ToolkitWords::ToolkitWords(std::string sentence) : sentence_(std::move(sentence)), next_(qInstallMessageHandler(take)) {
    holder() = this;
}

ToolkitWords::~ToolkitWords() {
    qInstallMessageHandler(next_);
    holder() = nullptr;
    const std::lock_guard lock(busy_);
    for (const Word& word : held_) {
        if (word.category == "qt.qpa.plugin") continue;
        const QMessageLogContext context(nullptr, 0, nullptr, word.category.constData());
        next_(word.type, context, word.text);
    }
}

void ToolkitWords::take(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    ToolkitWords& words = *holder();
    if (type == QtFatalMsg) words.end(text);
    if (type == QtDebugMsg) return words.next_(type, context, text);
    // A copy: the category's name may go with the plugin that has it.
    const std::lock_guard lock(words.busy_);
    words.held_.push_back({.type = type, .category = context.category, .text = text});
}

void ToolkitWords::end(const QString& fatal) const {
    std::fprintf(stderr, "%s The toolkit says:\n%s", sentence_.c_str(), qPrintable(reason(fatal)));
    std::fflush(nullptr);
    std::_Exit(kNoDisplayExitCode);
}

/// Of a platform that is there the toolkit says that it couldn't be loaded, but why stands before, if it is known.
QString ToolkitWords::reason(const QString& fatal) const {
    QString why;
    QString all;
    for (const Word& word : held_) {
        const QString line = QStringLiteral("  %1\n").arg(word.text.trimmed());
        all += line;
        if (!word.text.contains(QStringLiteral("even though it was found"))) why += line;
    }
    if (!why.isEmpty()) return why;
    return all + QStringLiteral("  %1\n").arg(fatal.simplified());
}

}  // namespace qrv
