#include "mpeg_ts_analysis/driver/command_line.h"

#include "mpeg_ts_analysis/driver/usage.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr uint32_t australia = 0x3200;

/// What follows the "=" of a switch, or null when the name is not followed by one.
using switch_value = const char *;

void set_max_pcr_interval(switch_value value)
{
    if (value != nullptr) settings.max_pcr_interval = std::strtod(value, nullptr) / 1000;
}

void set_program(switch_value value)
{
    if (value != nullptr) settings.program_focus = static_cast<uint16_t>(std::strtoul(value, nullptr, 0));
}

void set_assume_country(switch_value value)
{
    if (value == nullptr) return;
    if (*value >= '0' && *value <= '9')
        settings.assume_country = static_cast<uint32_t>(std::strtoul(value, nullptr, 0));
    else if (std::strcmp(value, "aus") == 0)
        settings.assume_country = australia;
}

void set_dump_ts(switch_value value)
{
    settings.dump_ts_mode = dump_ts_header;
    if (value == nullptr) return;
    if (std::strcmp(value, "contents") == 0) {
        settings.dump_ts_mode = dump_ts_contents;
    } else if (std::strcmp(value, "all") == 0 || std::strcmp(value, "raw") == 0) {
        settings.dump_ts_mode = dump_ts_contents;
        settings.dump_descriptors_mode = dump_descriptors_raw;
    }
}

void set_dump_descriptors(switch_value value)
{
    settings.dump_descriptors_mode = dump_descriptors_contents;
    if (value == nullptr) return;
    if (std::strcmp(value, "raw") == 0 || std::strcmp(value, "all") == 0)
        settings.dump_descriptors_mode = dump_descriptors_raw;
    else if (std::strcmp(value, "none") == 0)
        settings.dump_descriptors_mode = dump_descriptors_none;
}

void set_ts_bitrate(switch_value value)
{
    settings.ts_bitrate_auto = false;
    settings.ts_bitrate = 0;
    if (value == nullptr) return;
    if (std::strcmp(value, "auto") == 0)
        settings.ts_bitrate_auto = true;
    else
        settings.ts_bitrate = std::strtoull(value, nullptr, 0);
}

enum class matching { exact, prefix };
using enum matching;

struct command_switch {
    const char *name;
    matching match;
    void (*apply)(switch_value value); ///< null asks for the usage text
};

// The first match wins: an exact name may stand before a prefix that it begins with.
constexpr command_switch switches[] = {
    {"h",                       exact,  nullptr                                                    },
    {"help",                    exact,  nullptr                                                    },
    {"avchd",                   exact,  [](switch_value) { settings.packet_size_mode = 1; }        },
    {"std",                     exact,  [](switch_value) { settings.packet_size_mode = 0; }        },
    {"bdmv",                    exact,  [](switch_value) { settings.bdmv_mode = 1; }               },
    {"not-bdmv",                exact,  [](switch_value) { settings.bdmv_mode = 0; }               },
    {"dump-tables",             exact,  [](switch_value) { settings.dump_tables = true; }          },
    {"atsc",                    exact,  [](switch_value) { settings.atsc_mode = 1; }               },
    {"not-atsc",                exact,  [](switch_value) { settings.atsc_mode = 0; }               },
    {"atsc-mh",                 exact,  [](switch_value) { settings.atsc_mh_mode = 1; }            },
    {"not-atsc-mh",             exact,  [](switch_value) { settings.atsc_mh_mode = 0; }            },
    {"skip-padding",            exact,  [](switch_value) { settings.skip_padding = true; }         },
    {"max-pcr-interval",        prefix, set_max_pcr_interval                                       },
    {"program",                 prefix, set_program                                                },
    {"no-pcr-drift-correction", exact,  [](switch_value) { settings.pcr_drift_correction = false; }},
    {"pcr-drift-correction",    exact,  [](switch_value) { settings.pcr_drift_correction = true; } },
    {"dump-pcr-analysis",       exact,  [](switch_value) { settings.dump_pcr_analysis = true; }    },
    {"no-skip-padding",         exact,  [](switch_value) { settings.skip_padding = false; }        },
    {"assume-country",          prefix, set_assume_country                                         },
    {"dump-ts",                 prefix, set_dump_ts                                                },
    {"dump-descriptors",        prefix, set_dump_descriptors                                       },
    {"ts-bitrate",              prefix, set_ts_bitrate                                             },
};

const command_switch *find_switch(const char *name)
{
    for (const command_switch &candidate : switches) {
        const bool matches = candidate.match == exact
                                 ? std::strcmp(name, candidate.name) == 0
                                 : std::strncmp(name, candidate.name, std::strlen(candidate.name)) == 0;
        if (matches) return &candidate;
    }
    return nullptr;
}

/// Returns false when the run ends here.
bool apply_switch(const char *argument)
{
    const char *const name = argument + std::strspn(argument, "-");
    const command_switch *const found = find_switch(name);
    if (found == nullptr) {
        std::fprintf(stderr, "Unknown switch '%s'\n", name);
        return false;
    }
    if (found->apply == nullptr) return false;
    const char *const rest = name + std::strlen(found->name);
    found->apply(*rest == '=' ? rest + 1 : nullptr);
    return true;
}

} // namespace

const char *parse_command_line(int argc, const char *const *argv)
{
    const char *path = nullptr;

    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] != '-') {
            if (path == nullptr)
                path = argv[i];
            else
                std::fprintf(stderr, "Ignoring argv '%s'\n", argv[i]);
        } else if (!apply_switch(argv[i])) {
            print_usage();
            return nullptr;
        }
    }
    if (path == nullptr) print_usage();
    return path;
}
