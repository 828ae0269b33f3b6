// A file dialog that a test answers from a script; it records what was asked.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "platform/FileDialog.h"

namespace qrv {

class ScriptedFileDialog final : public FileDialog {
 public:
    ~ScriptedFileDialog() override {
        for (const std::string& path : answers_) ADD_FAILURE() << "a file dialog never came, for " << path;
    }

    /// The next dialog gives this path; "" is a cancel.
    void answer(std::string path) { answers_.push_back(std::move(path)); }

    std::string ask(const FileQuestion& question) override {
        asked.push_back(question);
        if (answers_.empty()) {
            ADD_FAILURE() << "an unexpected file dialog";
            return {};
        }
        std::string path = answers_.front();
        answers_.pop_front();
        return path;
    }

    std::vector<FileQuestion> asked;

 private:
    std::deque<std::string> answers_;
};

}  // namespace qrv
