// The outputs of a run: all opened before the recording is read, all written when it has been.
#pragma once

#include "mpeg_ts_overview/driver/command_line.h"
#include "mpeg_ts_overview/driver/output_file.h"
#include "mpeg_ts_overview/model/overview.h"

class overview_outputs {
public:
    /// Opens what the options ask for. input: what fstat() says of the recording. Returns false when one
    /// cannot be opened; error() says which and why.
    bool open(const overview_options &options, const struct stat &input);

    /// Writes all of them. Returns false when one cannot be written; error() says which was the first, and
    /// why.
    bool write(const overview &found);

    const std::string &error() const { return error_; }

private:
    bool open_one(std::optional<output_file> *output, const std::string &path, const struct stat &input);
    void finish(output_file *output);

    std::optional<output_file> json_;
    std::optional<output_file> html_;
    std::optional<output_file> text_;
    bool color_ = false;
    std::string error_;
};
