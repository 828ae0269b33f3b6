// Random programs down and up again: equal in all that a controller holds.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "TransferRig.h"
#include "blocks/ParameterScale.h"

namespace qrv::test {

namespace {

constexpr unsigned kFirstSeed = 20'250'601;
constexpr int kPrograms = 40;

std::vector<int> functionsOf(db1& db) {
    std::vector<int> found;
    db.FuncSetIndex("FN");
    for (int function = 0; function < 256; ++function) {
        db.FuncSeekI(function);
        if (!db.FuncNoMatch() && db.FuncVolRam() == 0) found.push_back(function);
    }
    return found;
}

/// Some forty blocks with values of every sign and size; hidden ones stay 0, for that is what a controller gives back.
void fill(Workbench& bench, std::mt19937& random) {
    db1& db = bench.db;
    const std::vector<int> functions = functionsOf(db);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (int i = 0; i < 40; ++i) {
        const auto block = static_cast<std::int16_t>(4 + below(596));
        const int function = functions[static_cast<std::size_t>(below(static_cast<int>(functions.size())))];
        assign_block_function(bench, block, static_cast<std::int16_t>(function));
        db.FuncSeekI(function);
        const int slots = db.FuncInputs() + db.FuncParams() + db.FuncHidden();
        for (int slot = 0; slot < slots; ++slot) {
            const int number = slot - db.FuncInputs() + 1;
            std::int32_t value = below(65536) - 32768;
            if (number > db.FuncParams()) value = 0;
            if (number >= 1 && number <= db.FuncParams()) {
                db.ParamSeek(function, number);
                if (db.ParamType() == kStringParameter) value = 0;
                if (db.ParamType() == 1) value = static_cast<std::int32_t>(random());
            }
            db.ConstantSeek(block, slot);
            db.ConstantEdit();
            db.ConstantValue(value);
            db.ConstantUpdate();
        }
    }
}

std::string programOf(Workbench& bench) {
    db1& db = bench.db;
    std::ostringstream text;
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        text << db.BlockFn() << ' ' << db.BlockConstant() << '\n';
    }
    for (db.ConstantMoveFirst(); !db.ConstantEOF(); db.ConstantMoveNext()) {
        text << db.ConstantBlockNumber() << '.' << db.ConstantOffset() << '=' << db.ConstantValue() << '\n';
    }
    return text.str();
}

}  // namespace

TEST(RoundTrip, RandomProgramsComeBackAsTheyWent) {
    for (int i = 0; i < kPrograms; ++i) {
        const unsigned seed = kFirstSeed + static_cast<unsigned>(i);
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        TransferRig rig;
        fill(rig.bench, random);
        rig.runDownload();
        ASSERT_TRUE(rig.download.outcome().committed);
        const std::string sent = programOf(rig.bench);
        rig.place(599, "PID");
        rig.runUpload();
        ASSERT_EQ(programOf(rig.bench), sent);
    }
}

}  // namespace qrv::test
