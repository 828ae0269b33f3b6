#include "blocks/BlockRef.h"

#include <gtest/gtest.h>

#include "BlockRig.h"

namespace qrv {
namespace {

struct WordRow {
    const char* name;
    std::int32_t word;
    BlockRef ref;
};

class BlockRefWord : public testing::TestWithParam<WordRow> {};

TEST_P(BlockRefWord, IsUnpackedAndPackedAgain) {
    EXPECT_EQ(BlockRef::ofWord(GetParam().word), GetParam().ref);
    EXPECT_EQ(GetParam().ref.word(), GetParam().word);
}

constexpr auto kMain = BlockRef::Kind::Main;
constexpr auto kAnalog = BlockRef::Kind::Analog;
constexpr auto kDiscrete = BlockRef::Kind::Discrete;

INSTANTIATE_TEST_SUITE_P(Edges, BlockRefWord,
                         testing::Values(WordRow{"firstBlock", 0, {0, 0, kMain}},
                                         WordRow{"lastBlock", 704, {704, 0, kMain}},
                                         WordRow{"noSuchBlock", 705, {705, 0, kAnalog}},
                                         WordRow{"lastWithoutOrdinal", 1023, {1023, 0, kAnalog}},
                                         WordRow{"firstAnalog", 1024, {0, 1, kAnalog}},
                                         WordRow{"analog2Of10", 2058, {10, 2, kAnalog}},
                                         WordRow{"lastAnalog", 32767, {1023, 31, kAnalog}},
                                         WordRow{"discrete1Of10", -31734, {10, 1, kDiscrete}},
                                         WordRow{"discrete31Of704", -320, {704, 31, kDiscrete}},
                                         WordRow{"discreteWithoutOrdinal", -32768, {0, 0, kDiscrete}},
                                         WordRow{"minusOne", -1, {1023, 31, kDiscrete}}),
                         [](const auto& row) { return row.param.name; });

TEST(BlockRef, OrdinalZeroIsTheMainOutputWhateverTheKind) {
    EXPECT_EQ(BlockRef::analog(12, 0).word(), 12);
    EXPECT_EQ(BlockRef::discrete(12, 0).word(), 12);
    EXPECT_EQ(BlockRef::analog(12, 3).word(), 3 * 1024 + 12);
    EXPECT_EQ(BlockRef::discrete(12, 3).word(), 3 * 1024 + 12 - 32768);
}

struct NameRow {
    const char* name;
    std::int32_t word;
    const char* text;
};

class BlockOutputNameOf : public testing::TestWithParam<NameRow> {};

TEST_P(BlockOutputNameOf, IsTheShortNameOrAMark) {
    OpenBlockRig rig;
    rig.bench.FnOfBlock[10] = 40;   // STAGE: two analog and three discrete outputs
    rig.bench.FnOfBlock[704] = 41;  // METER: one analog output
    EXPECT_EQ(BlockOutputName(rig.bench, GetParam().word), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Words, BlockOutputNameOf,
    testing::Values(NameRow{"main", 10, ""}, NameRow{"mainOfLast", 704, ""}, NameRow{"analog1", 1034, "LOAD"},
                    NameRow{"analog2", 2058, "RUNNING"}, NameRow{"analogBeyond", 3082, "BUNK"},
                    NameRow{"discrete1", 1034 - 32768, "STG1"}, NameRow{"discrete3", 3082 - 32768, "STG3"},
                    NameRow{"discreteBeyond", 4106 - 32768, "BUNK"},
                    NameRow{"discreteOfAnalogOnly", 1024 + 704 - 32768, "BUNK"}, NameRow{"ofANop", 1024 + 20, "BUNK"},
                    NameRow{"noSuchBlock", 705, ""}, NameRow{"auxOfNoSuchBlock", 1024 + 1023, ""},
                    NameRow{"bit15Alone", 10 - 32768, "BUNK"}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace qrv
