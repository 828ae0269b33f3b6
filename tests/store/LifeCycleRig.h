// A machine with configurations of its own and what a test looks at: for the tests of a file's life.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "store/db1.h"
#include "twins/ScriptedBox.h"
#include "twins/TestBench.h"

namespace qrv::test {

struct LifeCycleRig : TestBench {
    /// Makes a configuration under a name of the test's folder.
    std::string configuration(const std::string& name) {
        bench.db.create_new_database(path(name));
        return path(name);
    }
    void setTitle(const std::string& title) {
        bench.db.CommentEdit();
        bench.db.CommentTitle(title);
        bench.db.CommentUpdate();
    }
    std::string titleIn(const std::string& file) {
        ScriptedBox quiet;
        db1 other(quiet);
        other.open_existing_database(file);
        return other.CommentTitle();
    }
    [[nodiscard]] std::vector<std::string> workFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(bench.places.work))
            names.push_back(entry.path().filename());
        return names;
    }
};

inline void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

}  // namespace qrv::test
