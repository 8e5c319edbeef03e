#include "mpeg_ts_overview/driver/command_line.h"

#include "mpeg_ts_overview/driver/limit_value.h"
#include "mpeg_ts_overview/driver/overview_usage.h"
#include "mpeg_ts_overview/driver/standard_streams.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>

namespace {

constexpr uint32_t australia = 0x3200;
constexpr const char *standard_output = "-";

/// Wrong usage, in words.
struct usage_error {
    std::string message;
};

/// The options as they were given.
struct given_options {
    std::string input;
    std::string json;
    std::string html;
    std::string check;
    std::string packet_size;
    std::string clock;
    std::string bitrate;
    std::vector<std::string> limits;
    std::string assume_country;
    std::string color;
    bool text = false;
    bool whole_multiplex = false;
    bool atsc = false;
};

uint64_t read_number(std::string_view text, int base, const char *option)
{
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end != text.data() + text.size())
        throw usage_error{fmt::format("{}: '{}' is no number", option, text)};
    return number;
}

template <class Value>
struct named_value {
    const char *name;
    Value value;
};

constexpr named_value<unsigned> packet_sizes[] = {
    {"188", 188},
    {"192", 192},
    {"204", 204}
};
constexpr named_value<clock_choice> clocks[] = {
    {"pcr",     clock_choice::pcr    },
    {"arrival", clock_choice::arrival},
    {"none",    clock_choice::none   },
};
constexpr named_value<color_choice> colors[] = {
    {"auto",   color_choice::automatic},
    {"always", color_choice::always   },
    {"never",  color_choice::never    },
};

template <class Value, size_t count>
Value one_of(const named_value<Value> (&values)[count], const std::string &text, const char *option)
{
    std::string names;
    for (const named_value<Value> &each : values) {
        if (text == each.name) return each.value;
        names.append(names.empty() ? "" : ", ").append(each.name);
    }
    throw usage_error{fmt::format("{}: '{}' is none of {}", option, text, names)};
}

std::vector<int> read_priorities(std::string_view text)
{
    std::vector<int> priorities;
    for (std::string_view rest = text;; rest.remove_prefix(2)) {
        const bool is_priority = !rest.empty() && rest[0] >= '1' && rest[0] <= '3';
        if (!is_priority || (rest.size() > 1 && rest[1] != ','))
            throw usage_error{fmt::format("--check: '{}' is no list of priorities such as 1,2,3", text)};
        priorities.push_back(rest[0] - '0');
        if (rest.size() == 1) return priorities;
    }
}

uint64_t read_bitrate(const std::string &text)
{
    const uint64_t bitrate = read_number(text, 10, "--bitrate");
    if (bitrate < least_bitrate_bps || bitrate > most_bitrate_bps)
        throw usage_error{fmt::format("--bitrate: {} is not within {} and {} bits per second", bitrate,
                                      least_bitrate_bps, most_bitrate_bps)};
    return bitrate;
}

uint32_t read_country(const std::string &text)
{
    if (text == "aus") return australia;
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const uint64_t number = hexadecimal
                                ? read_number(std::string_view(text).substr(2), 16, "--assume-country")
                                : read_number(text, 10, "--assume-country");
    if (number > UINT32_MAX)
        throw usage_error{fmt::format("--assume-country: {} has more than 32 bits", text)};
    return static_cast<uint32_t>(number);
}

/// Whether both name one file, under whatever names. Pipes and devices have room for two.
bool take_each_others_place(const std::string &one, const std::string &other)
{
    std::error_code ignored;
    if (std::filesystem::is_other(one, ignored)) return false;
    const auto place_of = [&](const std::string &path) {
        return std::filesystem::weakly_canonical(std::filesystem::absolute(path, ignored), ignored);
    };
    return one == other || (!place_of(one).empty() && place_of(one) == place_of(other));
}

void check_outputs(const overview_options &options, bool text_asked_for)
{
    const auto to_standard_output = [](const std::optional<std::string> &path) {
        return path == standard_output;
    };
    if (to_standard_output(options.json) + to_standard_output(options.html) + text_asked_for > 1)
        throw usage_error{"only one of --json, --html and --text can go to standard output"};
    if (options.json && options.html && take_each_others_place(*options.json, *options.html))
        throw usage_error{fmt::format("--json and --html: both are '{}'", *options.json)};
}

/// The arguments, unless one lacks a value that CLI11 would take from the next: that may be the recording.
std::vector<std::string> arguments_of(int argc, const char *const *argv)
{
    std::vector<std::string> arguments;
    bool only_files = false;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument == "--") only_files = true;
        if (!only_files && (argument == "--json" || argument == "--html"))
            throw usage_error{fmt::format("{}: no file is named; it stands behind '='", argument)};
        if (!only_files && argument.starts_with("--") && argument.find('=') == argument.size() - 1)
            throw usage_error{fmt::format("{}: nothing stands behind '='", argument)};
        if (!only_files && argument == "--check") argument = "--check=1,2";
        arguments.push_back(argument);
    }
    return arguments;
}

void add_options(CLI::App *app, given_options *given)
{
    app->set_help_flag("-h,--help");
    app->set_version_flag("--version", "mpeg_ts_overview " OVERVIEW_VERSION);
    app->add_option("file", given->input);
    app->add_option("--json", given->json)->take_last();
    app->add_option("--html", given->html)->take_last();
    app->add_option("--check", given->check)->take_last();
    app->add_option("--packet-size", given->packet_size)->take_last();
    app->add_option("--clock", given->clock)->take_last();
    app->add_option("--bitrate", given->bitrate)->take_last();
    app->add_option("--assume-country", given->assume_country)->take_last();
    app->add_option("--color", given->color)->take_last();
    app->add_option("--limit", given->limits)->allow_extra_args(false);
    app->add_flag("--text", given->text)->disable_flag_override();
    app->add_flag("--whole-multiplex", given->whole_multiplex)->disable_flag_override();
    app->add_flag("--atsc,!--not-atsc", given->atsc)->disable_flag_override();
}

/// What the options mean that CLI11 found well formed.
void interpret(const CLI::App &app, const given_options &given, overview_options *options)
{
    const auto is_given = [&](const char *name) { return app.get_option(name)->count() > 0; };
    if (is_given("--json")) options->json = given.json;
    if (is_given("--html")) options->html = given.html;
    options->text = given.text || (!options->json && !options->html);
    check_outputs(*options, given.text);
    if (is_given("--check")) options->checked = read_priorities(given.check);
    options->whole_multiplex = given.whole_multiplex;
    if (is_given("--packet-size"))
        options->packet_size = one_of(packet_sizes, given.packet_size, "--packet-size");
    if (is_given("--clock")) options->clock = one_of(clocks, given.clock, "--clock");
    if (is_given("--bitrate")) options->bitrate_bps = read_bitrate(given.bitrate);
    if (options->clock == clock_choice::arrival && !options->bitrate_bps &&
        options->packet_size.value_or(192) != 192)
        throw usage_error{fmt::format("--clock=arrival: packets of {} bytes have no arrival time stamps",
                                      *options->packet_size)};
    for (const std::string &text : given.limits)
        if (std::string wrong = set_limit(text, &options->other_limits); !wrong.empty())
            throw usage_error{"--limit: " + wrong};
    if (is_given("--assume-country")) options->assume_country = read_country(given.assume_country);
    if (is_given("--atsc")) options->atsc_mode = given.atsc;
    if (is_given("--color")) options->color = one_of(colors, given.color, "--color");
    if (given.input.empty()) throw usage_error{"no file is named"};
    options->input = given.input;
}

int wrong_usage(const std::string &message)
{
    const int status = say_failure(message);
    std::fputs("mpeg_ts_overview --help lists the options\n", stderr);
    return status;
}

/// Returns the exit status.
int print(const std::string &text)
{
    const bool printed = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    if (printed) return 0;
    return say_failure(fmt::format("cannot write to standard output: {}", std::strerror(errno)));
}

} // namespace

std::optional<int> parse_command_line(int argc, const char *const *argv, overview_options *options)
{
    CLI::App app;
    given_options given;
    try {
        std::vector<std::string> arguments = arguments_of(argc, argv);
        std::reverse(arguments.begin(), arguments.end()); // CLI11 takes them from the back
        add_options(&app, &given);
        app.parse(std::move(arguments));
        interpret(app, given, options);
        return std::nullopt;
    } catch (const CLI::CallForHelp &) {
        return print(overview_usage);
    } catch (const CLI::CallForVersion &version) {
        return print(fmt::format("{}\n", version.what()));
    } catch (const CLI::ParseError &error) {
        return wrong_usage(error.what());
    } catch (const usage_error &error) {
        return wrong_usage(error.message);
    }
}

bool color_is_wanted(color_choice choice, bool output_is_terminal, const char *no_color, const char *term)
{
    if (choice != color_choice::automatic) return choice == color_choice::always;
    const bool refused = no_color != nullptr && *no_color != '\0';
    const bool plain = term == nullptr || std::strcmp(term, "dumb") == 0;
    return output_is_terminal && !refused && !plain;
}
