// Attribute text on a stream whose device is full.
#include <gtest/gtest.h>

#include <cstdint>

#include "dbc/well_known_attributes.h"
#include "io/dbc_file_stream.h"
#include "model/can_database.h"

namespace tabrin {
namespace {

class AttributesOnAFullDevice : public testing::Test {
protected:
    void SetUp() override {
        stream_.Open("/dev/full", 260, OpenMode::Write);
        ASSERT_EQ(stream_.Status(), FileStatus::Writing);
    }

    void WriteAttributes(uint32_t canFd) {
        WriteWellKnownAttributes(stream_, DatabaseInfo{TABRIN_PROTOCOL_NONE, canFd}, {}, {});
    }

    DbcFileStream stream_;
};

TEST_F(AttributesOnAFullDevice, EmptyTextDoesNoHarm) {
    WriteAttributes(0);
    EXPECT_EQ(stream_.Status(), FileStatus::Writing);
    stream_.Close();
    EXPECT_EQ(stream_.Status(), FileStatus::Closed);
}

// Its own failure is noticed later, as with every line.
TEST_F(AttributesOnAFullDevice, TextThatIsLostIsNoticedInClosing) {
    WriteAttributes(1);
    EXPECT_EQ(stream_.Status(), FileStatus::Writing);
    stream_.Close();
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(AttributesOnAFullDevice, TextThatIsLostIsNoticedByTheNextLine) {
    WriteAttributes(1);
    stream_.WriteLine("next");
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

}  // namespace
}  // namespace tabrin
