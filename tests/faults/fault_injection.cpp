// Preloaded into the analyser: lets read() of the input or close() of the report go wrong. FAULT says how,
// FAULT_AT at which call of read() (from 1).
//   error      that call and all later ones fail with EIO
//   interrupt  every other call fails with EINTR
//   short      no call returns more than 7 bytes
//   shrink     before that call the file is cut to nothing
//   grow       before that call 188000 bytes of padding packets are put behind the file's end
//   close      closing standard output fails with EIO, wherever FAULT_AT is
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

// Under names of their own: the C library's header may define read() itself.
extern "C" ssize_t faulty_read(int descriptor, void *buffer, size_t size) __asm__("read");
extern "C" ssize_t faulty_checked_read(int descriptor, void *buffer, size_t size,
                                       size_t room) __asm__("__read_chk");
extern "C" int faulty_close(int descriptor) __asm__("close");

namespace {

bool is_fault(const char *kind)
{
    const char *const wanted = std::getenv("FAULT");
    return wanted != nullptr && std::strcmp(wanted, kind) == 0;
}

int open_again(int descriptor, int flags)
{
    char path[64];
    std::snprintf(path, sizeof(path), "/proc/self/fd/%d", descriptor);
    return open(path, flags | O_CLOEXEC);
}

void shrink(int descriptor)
{
    const int file = open_again(descriptor, O_WRONLY);
    if (file < 0 || ftruncate(file, 0) != 0) std::abort();
    close(file);
}

void grow(int descriptor)
{
    unsigned char packet[188] = {0x47, 0x1F, 0xFF, 0x10};
    const int file = open_again(descriptor, O_WRONLY | O_APPEND);
    for (unsigned i = 0; i < 1000; ++i)
        if (file < 0 || write(file, packet, sizeof(packet)) != static_cast<ssize_t>(sizeof(packet)))
            std::abort();
    close(file);
}

} // namespace

ssize_t faulty_read(int descriptor, void *buffer, size_t size)
{
    static unsigned long calls = 0;

    if (descriptor > STDERR_FILENO) {
        const char *const fault_at = std::getenv("FAULT_AT");
        const unsigned long at = fault_at != nullptr ? std::strtoul(fault_at, nullptr, 10) : 1;
        ++calls;
        if ((is_fault("error") && calls >= at) || (is_fault("interrupt") && calls % 2 == 1)) {
            errno = is_fault("error") ? EIO : EINTR;
            return -1;
        }
        if (is_fault("short") && size > 7) size = 7;
        if (is_fault("shrink") && calls == at) shrink(descriptor);
        if (is_fault("grow") && calls == at) grow(descriptor);
    }
    return syscall(SYS_read, descriptor, buffer, size);
}

ssize_t faulty_checked_read(int descriptor, void *buffer, size_t size, size_t)
{
    return faulty_read(descriptor, buffer, size);
}

int faulty_close(int descriptor)
{
    if (descriptor == STDOUT_FILENO && is_fault("close")) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_close, descriptor));
}
