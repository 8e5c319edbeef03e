// The outputs of a run, as the options ask for them.
#pragma once

#include "mpeg_ts_overview/driver/command_line.h"
#include "mpeg_ts_overview/driver/output_file.h"
#include "mpeg_ts_overview/model/overview.h"

#include <sys/stat.h>

class outputs {
public:
    /// Opens what the options ask for. input: what fstat() says of the input. Returns false, with a message
    /// on standard error, when one cannot be opened.
    bool open(const overview_options &options, const struct stat &input);

    /// Writes all of them. Returns false, with a message on standard error, when one cannot be written: the
    /// others are whole all the same.
    bool write(const overview_options &options, const overview &found);

private:
    output_file json;
    output_file html;
    output_file text;
};
