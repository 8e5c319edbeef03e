#include "mpeg_ts_overview/driver/output_file.h"

#include "mpeg_ts_overview/driver/unfinished_outputs.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class output_files : public testing::Test {
protected:
    output_files()
    {
        char name[] = "/tmp/output_file_test.XXXXXX";
        folder = mkdtemp(name);
        input_path = folder / "input.ts";
        put(input_path, "a recording");
    }

    ~output_files() override { fs::remove_all(folder); }

    static void put(const fs::path &path, const std::string &text) { std::ofstream(path) << text; }

    static std::string contents(const fs::path &path)
    {
        std::stringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    struct stat input() const
    {
        struct stat file = {};
        stat(input_path.c_str(), &file);
        return file;
    }

    static mode_t mode_of(const fs::path &path)
    {
        struct stat file = {};
        stat(path.c_str(), &file);
        return file.st_mode & 07777;
    }

    size_t files_in_folder() const
    {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    /// What goes wrong with an output of that text, empty when nothing does.
    std::string error_of(const std::string &path, std::string_view text)
    {
        output_file output;
        const bool written = output.open(path, input()) && output.write(text) && output.finish();
        EXPECT_EQ(written, output.error().empty());
        return output.error();
    }

    /// Runs it in a process of its own and returns how that ended.
    static int wait_status_of(const std::function<void()> &run)
    {
        const pid_t child = fork();
        if (child == 0) {
            run();
            _exit(testing::Test::HasFailure() ? 1 : 0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return status;
    }

    fs::path folder;
    fs::path input_path;
};

} // namespace

TEST_F(output_files, a_new_file_appears_when_it_is_whole)
{
    const fs::path path = folder / "out.json";
    output_file output;
    ASSERT_TRUE(output.open(path, input()));
    EXPECT_TRUE(output.write("one "));
    EXPECT_TRUE(output.write(std::string(100000, 'x')));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(contents(path), "one " + std::string(100000, 'x'));
    EXPECT_EQ(files_in_folder(), 2U);
}

TEST_F(output_files, a_new_file_has_the_mode_that_open_gives)
{
    const mode_t before = umask(027);
    EXPECT_EQ(error_of(folder / "out.json", "text"), "");
    umask(before);
    EXPECT_EQ(mode_of(folder / "out.json"), 0640U);
}

TEST_F(output_files, a_file_without_a_folder_in_its_name_is_beside_too)
{
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    EXPECT_EQ(error_of("out.json", "text"), "");
    fs::current_path(before);
    EXPECT_EQ(contents(folder / "out.json"), "text");
    EXPECT_EQ(files_in_folder(), 2U);
}

TEST_F(output_files, a_file_that_is_there_is_replaced_and_keeps_its_mode)
{
    const fs::path path = folder / "out.json";
    put(path, "before, and longer");
    chmod(path.c_str(), 0604);
    output_file output;
    ASSERT_TRUE(output.open(path, input()));
    EXPECT_TRUE(output.write("after"));
    EXPECT_EQ(contents(path), "before, and longer");
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(contents(path), "after");
    EXPECT_EQ(mode_of(path), 0604U);
}

TEST_F(output_files, what_is_not_finished_leaves_no_trace)
{
    const fs::path path = folder / "out.json";
    put(path, "before");
    {
        output_file output;
        ASSERT_TRUE(output.open(path, input()));
        EXPECT_TRUE(output.write(std::string(100000, 'x')));
        EXPECT_EQ(files_in_folder(), 3U);
    }
    EXPECT_EQ(contents(path), "before");
    EXPECT_EQ(files_in_folder(), 2U);
}

TEST_F(output_files, a_symbolic_link_stays_and_what_it_names_is_written)
{
    put(folder / "target", "before, and longer");
    fs::create_symlink("target", folder / "link");
    EXPECT_EQ(error_of(folder / "link", "after"), "");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(contents(folder / "target"), "after");

    fs::create_symlink("nothing yet", folder / "dangling");
    EXPECT_EQ(error_of(folder / "dangling", "text"), "");
    EXPECT_EQ(contents(folder / "nothing yet"), "text");
}

TEST_F(output_files, what_a_symbolic_link_names_is_kept_until_something_is_written)
{
    put(folder / "target", "before");
    fs::create_symlink("target", folder / "link");
    {
        output_file unfinished;
        EXPECT_TRUE(unfinished.open(folder / "link", {}));
    }
    EXPECT_EQ(contents(folder / "target"), "before");
}

TEST_F(output_files, a_named_pipe_is_written_in_place)
{
    const fs::path path = folder / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(error_of(path, "through the pipe"), "");
    char bytes[32];
    EXPECT_EQ(read(reader, bytes, sizeof bytes), 16);
    EXPECT_EQ(std::string(bytes, 16), "through the pipe");
    close(reader);
    EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(output_files, the_input_is_never_written_to)
{
    EXPECT_EQ(error_of(input_path, "text"), "cannot write '" + input_path.string() + "': it is the input");
    fs::create_hard_link(input_path, folder / "hard");
    EXPECT_EQ(error_of(folder / "hard", "text"),
              "cannot write '" + (folder / "hard").string() + "': it is the input");
    fs::create_symlink("input.ts", folder / "soft");
    EXPECT_EQ(error_of(folder / "soft", "text"),
              "cannot write '" + (folder / "soft").string() + "': it is the input");
    EXPECT_EQ(contents(input_path), "a recording");
    EXPECT_EQ(files_in_folder(), 3U);
}

TEST_F(output_files, standard_output_is_not_the_input_either)
{
    const int status = wait_status_of([&] {
        const int descriptor = open(input_path.c_str(), O_RDWR);
        dup2(descriptor, STDOUT_FILENO);
        if (error_of("-", "text") != "cannot write to standard output: it is the input") _exit(1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contents(input_path), "a recording");
}

TEST_F(output_files, a_name_of_standard_output_goes_on_where_that_stands)
{
    const fs::path place = folder / "both";
    const int status = wait_status_of([&] {
        const int descriptor = open(place.c_str(), O_WRONLY | O_CREAT, 0600);
        dup2(descriptor, STDOUT_FILENO);
        if (write(STDOUT_FILENO, "before ", 7) != 7 || error_of("/dev/stdout", "text") != "") _exit(1);
        if (write(STDOUT_FILENO, " behind", 7) != 7) _exit(1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contents(place), "before text behind");
}

TEST_F(output_files, a_full_disk_is_said)
{
    EXPECT_EQ(error_of("/dev/full", "text"), "cannot write '/dev/full': No space left on device");
    EXPECT_EQ(error_of("/dev/full", std::string(200000, 'x')),
              "cannot write '/dev/full': No space left on device");
    EXPECT_EQ(error_of("/dev/null", "text"), "");
}

TEST_F(output_files, nothing_is_written_behind_an_error)
{
    output_file output;
    ASSERT_TRUE(output.open("/dev/full", input()));
    EXPECT_FALSE(output.write(std::string(200000, 'x')));
    EXPECT_FALSE(output.write("more"));
    EXPECT_FALSE(output.finish());
    EXPECT_EQ(output.error(), "cannot write '/dev/full': No space left on device");
}

TEST_F(output_files, a_file_that_cannot_grow_leaves_what_was_there)
{
    const fs::path path = folder / "out.json";
    put(path, "before");
    const int status = wait_status_of([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {100000, 100000};
        setrlimit(RLIMIT_FSIZE, &limit);
        if (error_of(path, std::string(200000, 'x')) !=
            "cannot write '" + path.string() + "': File too large")
            _exit(1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contents(path), "before");
    EXPECT_EQ(files_in_folder(), 2U);
}

TEST_F(output_files, places_that_cannot_be_are_said)
{
    const std::string missing = folder / "no" / "out.json";
    EXPECT_EQ(error_of(missing, "text"), "cannot write '" + missing + "': No such file or directory");
    const std::string below_a_file = input_path / "out.json";
    EXPECT_EQ(error_of(below_a_file, "text"), "cannot write '" + below_a_file + "': Not a directory");
    EXPECT_EQ(error_of(folder, "text"), "cannot write '" + folder.string() + "': Is a directory");
}

TEST_F(output_files, a_file_that_may_not_be_written_to_is_not_replaced)
{
    const fs::path path = folder / "out.json";
    put(path, "before");
    chmod(path.c_str(), 0444);
    chmod(folder.c_str(), 0777);
    const int status = wait_status_of([&] {
        if (geteuid() == 0 && seteuid(65534) != 0) _exit(2);
        if (error_of(path, "after") != "cannot write '" + path.string() + "': Permission denied") _exit(1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contents(path), "before");
    EXPECT_EQ(files_in_folder(), 2U);
}

TEST_F(output_files, standard_output_is_waited_for_when_it_does_not_block)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t writer = fork();
    if (writer == 0) {
        close(ends[0]);
        fcntl(ends[1], F_SETFL, O_NONBLOCK);
        dup2(ends[1], STDOUT_FILENO);
        _exit(error_of("-", std::string(1000000, 'x')).empty() ? 0 : 1);
    }
    close(ends[1]);
    std::string bytes(65536, ' ');
    size_t count = 0;
    ssize_t got = 0;
    while ((got = read(ends[0], bytes.data(), bytes.size())) > 0) count += static_cast<size_t>(got);
    close(ends[0]);
    int status = 0;
    waitpid(writer, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(count, 1000000U);
}

TEST_F(output_files, standard_output_that_is_closed_is_said)
{
    const int status = wait_status_of([&] {
        close(STDOUT_FILENO);
        if (error_of("-", "text") != "cannot write to standard output: Bad file descriptor") _exit(1);
    });
    EXPECT_EQ(status, 0);
}

TEST_F(output_files, a_signal_takes_unfinished_files_with_it)
{
    const auto end_by = [&](int signal) {
        return wait_status_of([&, signal] {
            unfinished_outputs_remove_on({SIGTERM, SIGPIPE, SIGHUP});
            output_file one;
            output_file other;
            if (!one.open(folder / "one.json", input()) || !other.open(folder / "other.html", input()))
                _exit(3);
            if (files_in_folder() != 3) _exit(4);
            std::raise(signal);
        });
    };
    for (const int signal : {SIGTERM, SIGPIPE, SIGHUP}) {
        const int status = end_by(signal);
        EXPECT_TRUE(WIFSIGNALED(status)) << status;
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_EQ(files_in_folder(), 1U);
    }
}

TEST_F(output_files, an_ignored_signal_stays_ignored)
{
    const int status = wait_status_of([&] {
        std::signal(SIGHUP, SIG_IGN);
        unfinished_outputs_remove_on({SIGHUP});
        output_file output;
        if (!output.open(folder / "out.json", input())) _exit(3);
        std::raise(SIGHUP);
        if (!output.write("text") || !output.finish()) _exit(4);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contents(folder / "out.json"), "text");
}

TEST_F(output_files, a_finished_file_is_not_removed)
{
    const int status = wait_status_of([&] {
        unfinished_outputs_remove_on({SIGTERM});
        output_file output;
        if (!output.open(folder / "out.json", input()) || !output.write("text") || !output.finish()) _exit(3);
        std::raise(SIGTERM);
    });
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(contents(folder / "out.json"), "text");
}
