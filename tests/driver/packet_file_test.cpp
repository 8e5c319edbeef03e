#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/packet_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>

struct packet_files : report_test {
    packet_files()
    {
        for (unsigned i = 0; i < content.size(); ++i) content[i] = static_cast<uint8_t>(i * 7 + i / 256);
        descriptor = mkstemp(path);
        EXPECT_EQ(write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    }
    ~packet_files() override
    {
        close(descriptor);
        unlink(path);
    }

    void open_with(size_t block_size)
    {
        ASSERT_TRUE(packet_file_open(file.get(), path));
        file->block_size = block_size;
    }

    /// Reads packets to the end of the file and looks at their bytes and offsets. Returns how many there are.
    unsigned read_from(size_t offset, unsigned packet_size)
    {
        unsigned count = 0;
        while (const unsigned char *const p = packet_file_next(file.get(), packet_size)) {
            EXPECT_EQ(packet_file_offset(file.get(), p), offset);
            EXPECT_TRUE(std::equal(p, p + packet_size, content.begin() + static_cast<long>(offset)));
            offset += packet_size;
            ++count;
        }
        return count;
    }

    bytes content = bytes(10000);
    char path[32] = "/tmp/mpeg_ts_test_XXXXXX";
    int descriptor = -1;
    std::unique_ptr<packet_file> file = std::make_unique<packet_file>();
};

TEST_F(packet_files, a_path_that_cannot_be_opened_is_refused)
{
    EXPECT_FALSE(packet_file_open(file.get(), "/nonexistent/stream.ts"));
    EXPECT_FALSE(packet_file_open(file.get(), ""));
}

TEST_F(packet_files, packets_come_in_order_with_their_offsets_whatever_the_block_size)
{
    for (const size_t block_size :
         {size_t{1}, size_t{7}, size_t{188}, size_t{191}, size_t{1000}, packet_file_block_size}) {
        open_with(block_size);
        EXPECT_EQ(read_from(0, 188), 53u) << block_size; // 36 bytes are left
        EXPECT_EQ(packet_file_next(file.get(), 188), nullptr) << "the end stays the end";
        EXPECT_EQ(file->error, 0);
        packet_file_close(file.get());
    }
}

TEST_F(packet_files, filling_takes_nothing)
{
    for (const size_t block_size : {size_t{1}, size_t{500}, packet_file_block_size}) {
        open_with(block_size);
        EXPECT_EQ(packet_file_fill(file.get(), 6144), 6144u);
        EXPECT_TRUE(std::equal(file->next, file->next + 6144, content.begin()));
        EXPECT_EQ(packet_file_fill(file.get(), 100), 100u);
        EXPECT_EQ(packet_file_fill(file.get(), packet_file_headroom), packet_file_headroom);
        EXPECT_EQ(read_from(0, 192), 52u) << block_size;
        EXPECT_EQ(packet_file_fill(file.get(), 192), 16u) << "what is left";
        packet_file_close(file.get());
    }
}

TEST_F(packet_files, rewinding_starts_again)
{
    open_with(1000);
    EXPECT_EQ(read_from(0, 188), 53u);
    EXPECT_TRUE(packet_file_rewind(file.get()));
    EXPECT_EQ(read_from(0, 192), 52u);
    EXPECT_TRUE(packet_file_rewind(file.get()));
    packet_file_next(file.get(), 188);
    EXPECT_TRUE(packet_file_rewind(file.get()));
    EXPECT_EQ(read_from(0, 188), 53u);
    packet_file_close(file.get());
}

TEST_F(packet_files, a_pipe_does_not_rewind_and_loses_nothing)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], content.data(), 1000), 1000);
    close(ends[1]);

    ASSERT_TRUE(packet_file_open(file.get(), ("/proc/self/fd/" + std::to_string(ends[0])).c_str()));
    EXPECT_EQ(packet_file_fill(file.get(), 500), 500u);
    EXPECT_FALSE(packet_file_rewind(file.get()));
    EXPECT_TRUE(file->flushes_report);
    EXPECT_EQ(read_from(0, 188), 5u);
    packet_file_close(file.get());
    close(ends[0]);
}

TEST_F(packet_files, a_read_that_fails_is_the_end_and_leaves_its_error)
{
    ASSERT_TRUE(packet_file_open(file.get(), "/tmp"));
    EXPECT_EQ(file->error, 0);
    EXPECT_EQ(packet_file_next(file.get(), 188), nullptr);
    EXPECT_EQ(file->error, EISDIR);
    packet_file_close(file.get());
}
