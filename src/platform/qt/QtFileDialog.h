// The desktop's file dialog: the toolkit's own, for it alone takes every name without a question and adds no suffix.
#pragma once

#include <QStringList>

#include "platform/FileDialog.h"

namespace qrv {

class QtFileDialog final : public FileDialog {
 public:
    std::string ask(const FileQuestion& question) override;
};

/// The toolkit's form of a filter "description|*.a;*.b", pairs joined by "|".
[[nodiscard]] QStringList nameFilters(const std::string& filter);

}  // namespace qrv
