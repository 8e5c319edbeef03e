// Runs a command with its output thrown away and prints what it took: peak memory in KiB, then milliseconds.
//   measure COMMAND [ARGUMENT...]
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char **argv)
{
    if (argc < 2) return 1;

    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0) _exit(126);
        execv(argv[1], argv + 1);
        _exit(127);
    }
    int status = 0;
    rusage usage = {};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status)) return 1;

    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    std::printf("%ld %.0f\n", usage.ru_maxrss, time.count());
    return WEXITSTATUS(status);
}
