// Sets a variable for as long as it lives, whatever the way out.
#pragma once

#include <utility>

namespace qrv {

template <typename Value>
class [[nodiscard]] WhileSet {
 public:
    WhileSet(Value& variable, Value value) : variable_(variable), before_(std::exchange(variable, std::move(value))) {}
    ~WhileSet() { variable_ = std::move(before_); }
    WhileSet(const WhileSet&) = delete;
    WhileSet& operator=(const WhileSet&) = delete;

 private:
    Value& variable_;
    Value before_;
};

}  // namespace qrv
