#include "mpeg12_ts/new_record.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace {

struct alignas(256) sample {
    int number = 7;
    const char *text = nullptr;
    unsigned char rest[1000];
};

} // namespace

TEST(new_record, has_its_default_values_where_its_alignment_asks)
{
    sample *const record = new_record<sample>();

    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->number, 7);
    EXPECT_EQ(record->text, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(record) % 256, 0u);
    std::free(record);
}
