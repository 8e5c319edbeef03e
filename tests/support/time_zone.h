// The time zone of a test, put back when it ends.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

class time_zone {
public:
    explicit time_zone(const char *name)
    {
        if (const char *const set = std::getenv("TZ")) before = set;
        setenv("TZ", name, 1);
        tzset();
    }
    ~time_zone()
    {
        if (before)
            setenv("TZ", before->c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    time_zone(const time_zone &) = delete;
    time_zone &operator=(const time_zone &) = delete;

private:
    std::optional<std::string> before;
};
