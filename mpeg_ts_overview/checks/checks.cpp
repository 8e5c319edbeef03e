#include "mpeg_ts_overview/checks/checks.h"

#include "mpeg_ts_overview/checks/check_rows.h"

#include <string_view>

namespace {

enum class applies_to { every_stream, dvb, atsc };

/// Whether the row looks at intervals, which without times cannot be measured.
enum class looks_at { intervals, other };

struct check_row {
    const char *id;
    int priority;
    const char *name;
    applies_to streams;
    looks_at what;
    void (*look)(check_builder &row);
};

constexpr applies_to every = applies_to::every_stream;
constexpr applies_to dvb = applies_to::dvb;
constexpr applies_to atsc = applies_to::atsc;
constexpr looks_at intervals = looks_at::intervals;
constexpr looks_at other = looks_at::other;

constexpr check_row rows[] = {
    {"1.1",  1, "TS_sync_loss",                      every, other,     look_at_sync_loss         },
    {"1.2",  1, "Sync_byte_error",                   every, other,     look_at_sync_bytes        },
    {"1.3a", 1, "PAT_error_2",                       every, intervals, look_at_pat               },
    {"1.4",  1, "Continuity_count_error",            every, other,     look_at_continuity        },
    {"1.5a", 1, "PMT_error_2",                       every, intervals, look_at_pmts              },
    {"1.6",  1, "PID_error",                         every, intervals, look_at_absent_pids       },
    {"2.1",  2, "Transport_error",                   every, other,     look_at_transport_errors  },
    {"2.2",  2, "CRC_error",                         every, other,     look_at_crcs              },
    {"2.3a", 2, "PCR_repetition_error",              every, other,     look_at_pcr_intervals     },
    {"2.3b", 2, "PCR_discontinuity_indicator_error", every, other,     look_at_pcr_leaps         },
    {"2.4",  2, "PCR_accuracy_error",                every, other,     look_at_pcr_accuracy      },
    {"2.5",  2, "PTS_error",                         every, intervals, look_at_pts_intervals     },
    {"2.6",  2, "CAT_error",                         every, other,     look_at_cat               },
    {"3.1a", 3, "NIT_actual_error",                  dvb,   intervals, look_at_nit               },
    {"3.2",  3, "SI_repetition_error",               dvb,   intervals, look_at_si_repetition     },
    {"3.2b", 3, "SI_minimum_gap",                    dvb,   intervals, look_at_si_gaps           },
    {"3.4a", 3, "Unreferenced_PID",                  every, intervals, look_at_unreferenced_pids },
    {"3.5a", 3, "SDT_actual_error",                  dvb,   intervals, look_at_sdt               },
    {"3.6a", 3, "EIT_actual_error",                  dvb,   intervals, look_at_eit               },
    {"3.6c", 3, "EIT_PF_error",                      dvb,   intervals, look_at_eit_halves        },
    {"3.7",  3, "RST_error",                         dvb,   other,     look_at_rst               },
    {"3.8",  3, "TDT_error",                         dvb,   intervals, look_at_tdt               },
    {"3.3",  3, "Buffer_error",                      every, other,     look_at_decoder_model     },
    {"3.9",  3, "Empty_buffer_error",                every, other,     look_at_decoder_model     },
    {"3.10", 3, "Data_delay_error",                  every, other,     look_at_decoder_model     },
    {"A.1",  3, "PSIP_interval",                     atsc,  intervals, look_at_psip              },
    {"A.2",  3, "ATSC_PSI_interval",                 atsc,  intervals, look_at_atsc_psi          },
    {"X.1",  3, "Late_time_stamps",                  every, intervals, look_at_late_time_stamps  },
    {"X.2",  3, "Changed_under_same_version",        every, other,     look_at_unchanged_versions},
    {"X.3",  3, "Decoding_order",                    every, other,     look_at_decoding_order    },
};

void look_at(const check_row &row, check_builder &builder)
{
    if (row.what == intervals && !builder.from().has_times()) builder.add_unmeasured("no times");
    row.look(builder);
}

} // namespace

std::vector<check_result> judge(const check_sources &sources)
{
    const std::string_view standard = sources.tables.standard();
    std::vector<check_result> results;

    for (const check_row &row : rows) {
        check_builder builder(sources, row.id, row.priority, row.name);
        if (row.streams == dvb && standard != "DVB")
            builder.add_unmeasured("not a DVB stream");
        else if (row.streams == atsc && standard != "ATSC")
            builder.add_unmeasured("not an ATSC stream");
        else
            look_at(row, builder);
        results.push_back(std::move(builder).finish());
    }
    return results;
}
