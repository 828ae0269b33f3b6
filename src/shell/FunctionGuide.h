// The catalogue's pages for people, as the windows use them: the sentence of a function and its whole page. Read once,
// when first asked.
#pragma once

#include <map>
#include <string>

namespace qrv {

class FunctionGuide {
 public:
    /// @param folder  where the catalogue lies. A missing file of pages is no fault: then there is nothing to say.
    explicit FunctionGuide(std::string folder) : folder_(std::move(folder)) {}

    /// "Sum of two" for "ADD"; "" for a name that has no page. UTF-8.
    [[nodiscard]] std::string sentenceOf(const std::string& name);
    /// The page, lines of at most 80 characters; "" for a name that has none.
    [[nodiscard]] std::string pageOf(const std::string& name);

 private:
    void read();

    std::string folder_;
    bool isRead_ = false;
    std::string pages_;
    std::map<std::string, std::string> sentences_;
};

}  // namespace qrv
