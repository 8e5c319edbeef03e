#include "mpeg_ts_analysis/driver/packet_file.h"

#include "mpeg_ts_analysis/driver/interrupt.h"
#include "mpeg_ts_analysis/report/report.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Files beyond 2 GiB can be opened on 32-bit machines too.
static_assert(sizeof(off_t) >= 8);

namespace {

unsigned char *block_of(packet_file *file)
{
    return file->bytes + packet_file_headroom;
}

void forget_what_was_read(packet_file *file)
{
    file->next = file->fence = block_of(file);
    file->fence_offset = 0;
    file->at_end = false;
    file->error = 0;
}

/// Reads one block behind the bytes that are left, which move to the end of the headroom. Returns false when
/// there is nothing more to read.
bool read_block(packet_file *file)
{
    if (file->at_end) return false;
    interrupt_stop_if_noted();
    if (file->flushes_report) report_flush();
    if (file->progress != nullptr) progress_show(file->progress, file->fence_offset);

    const auto left = static_cast<size_t>(file->fence - file->next);
    unsigned char *const start = block_of(file) - left;
    std::memmove(start, file->next, left);
    file->next = start;
    file->fence = block_of(file);

    ssize_t size = 0;
    while ((size = read(file->descriptor, block_of(file), file->block_size)) < 0 && errno == EINTR)
        interrupt_stop_if_noted();
    if (size <= 0) {
        if (size < 0) file->error = errno;
        file->at_end = true;
        return false;
    }
    file->fence += size;
    file->fence_offset += static_cast<unsigned long long>(size);
    return true;
}

} // namespace

bool packet_file_open(packet_file *file, const char *path)
{
    struct stat status = {};

    while ((file->descriptor = open(path, O_RDONLY | O_CLOEXEC)) < 0 && errno == EINTR)
        interrupt_stop_if_noted();
    if (file->descriptor < 0) return false;
    const bool regular = fstat(file->descriptor, &status) == 0 && S_ISREG(status.st_mode);
    file->size = regular ? static_cast<unsigned long long>(status.st_size) : 0;
    file->flushes_report = !regular || isatty(STDOUT_FILENO) != 0;
    forget_what_was_read(file);
    return true;
}

bool packet_file_rewind(packet_file *file)
{
    if (lseek(file->descriptor, 0, SEEK_SET) != 0) return false;
    forget_what_was_read(file);
    return true;
}

size_t packet_file_fill(packet_file *file, size_t size)
{
    while (static_cast<size_t>(file->fence - file->next) < size)
        if (!read_block(file)) break;
    return std::min(size, static_cast<size_t>(file->fence - file->next));
}

void packet_file_close(packet_file *file)
{
    close(file->descriptor);
    file->descriptor = -1;
}
