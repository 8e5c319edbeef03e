#include "mpeg_ts_overview/output/json_stream.h"

#include "mpeg_ts_overview/output/json_line.h"

void json_stream::member(std::string_view name, const ordered_json &value)
{
    next_line();
    put_value(name);
    put(": ");
    put_value(value);
}

void json_stream::open_object(std::string_view name)
{
    open(name, "{");
}

void json_stream::close_object()
{
    close("}");
}

bool json_stream::end()
{
    close("}");
    put("\n");
    return !failed_;
}

void json_stream::open(std::string_view name, std::string_view bracket)
{
    next_line();
    put_value(name);
    put(": ");
    put(bracket);
    first_ = true;
}

void json_stream::close(std::string_view bracket)
{
    if (!first_) put("\n");
    put(bracket);
    first_ = false;
}

void json_stream::next_line()
{
    put(first_ ? "\n" : ",\n");
    first_ = false;
}

void json_stream::put_value(const ordered_json &value)
{
    put(json_line(value));
}

void json_stream::put(std::string_view text)
{
    if (!failed_ && !write_(text)) failed_ = true;
}
