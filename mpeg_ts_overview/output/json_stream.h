// One JSON object, put out as it grows: a member or a row of a list on a line of its own.
#pragma once

#include "mpeg_ts_overview/output/json_values.h"

#include <functional>
#include <string_view>

class json_stream {
public:
    /// write takes the next piece and returns false when no more can be written.
    explicit json_stream(const std::function<bool(std::string_view)> &write) : write_(write) { put("{"); }

    void member(std::string_view name, const ordered_json &value);

    void open_object(std::string_view name);
    void close_object();

    template <class Rows, class Row>
    void list(std::string_view name, const Rows &rows, const Row &row)
    {
        open(name, "[");
        for (const auto &each : rows) {
            if (failed_) return;
            next_line();
            put_value(row(each));
        }
        close("]");
    }

    /// Ends the object. Returns false when something could not be written.
    bool end();

private:
    void open(std::string_view name, std::string_view bracket);
    void close(std::string_view bracket);
    void next_line();
    void put_value(const ordered_json &value);
    void put(std::string_view text);

    const std::function<bool(std::string_view)> &write_;
    bool first_ = true; ///< nothing stands in the innermost bracket yet
    bool failed_ = false;
};
