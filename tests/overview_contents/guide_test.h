// A guide that takes sections.
#pragma once

#include "tests/overview_contents/si_sections.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/contents/guide.h"

#include <gtest/gtest.h>

struct guide_found : testing::Test {
    dvb_text_converter texts;
    programme_guide guide{texts};

    void receive(const bytes &data, const moment &at = {})
    {
        const offered_section section(0x0012, data, at);
        ASSERT_TRUE(section.is_whole());
        guide.on_section(*section);
    }

    /// The only event.
    guide_event found()
    {
        const guide_facts facts = guide.finish();
        EXPECT_EQ(facts.events.size(), 1u);
        return facts.events.empty() ? guide_event{} : facts.events[0];
    }

    static section_fields version(unsigned number)
    {
        section_fields fields;
        fields.version_number = number;
        return fields;
    }

    /// An event of service 1 that follows.
    static bytes following(const bytes &entry)
    {
        section_fields fields;
        fields.section_number = fields.last_section_number = 1;
        return eit_section(0x4E, 1, entry, fields);
    }
};
