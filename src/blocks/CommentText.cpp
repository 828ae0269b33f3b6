#include "blocks/CommentText.h"

namespace qrv {

std::string withBoxBreaks(const std::string& stored) {
    std::string shown;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        if (stored[i] != '\r') {
            shown += stored[i];
            continue;
        }
        shown += '\n';
        if (i + 1 < stored.size() && stored[i + 1] == '\n') ++i;
    }
    return shown;
}

std::string withStoredBreaks(const std::string& shown) {
    std::string stored;
    for (const char c : shown) {
        if (c == '\n') stored += '\r';
        stored += c;
    }
    return stored;
}

std::string withoutDoubledBreaks(const std::string& shown) {
    std::string text;
    for (const char c : shown) {
        if (c != '\n' || !text.ends_with('\n')) text += c;
    }
    return text;
}

}  // namespace qrv
