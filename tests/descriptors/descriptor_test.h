// One descriptor at a time, in each dump mode, on a PID that keeps its private data specifier.
#pragma once

#include "tests/support/report_test.h"

struct descriptor_test : report_test {
    std::string none(unsigned tag, const bytes &body)
    {
        return report_in_mode(dump_descriptors_none, tag, body);
    }

    std::string contents(unsigned tag, const bytes &body)
    {
        return report_in_mode(dump_descriptors_contents, tag, body);
    }

    std::string raw(unsigned tag, const bytes &body)
    {
        return report_in_mode(dump_descriptors_raw, tag, body);
    }

private:
    std::string report_in_mode(uint8_t mode, unsigned tag, const bytes &body)
    {
        settings.dump_descriptors_mode = mode;
        return report_of_descriptors(descriptor(tag, body));
    }
};
