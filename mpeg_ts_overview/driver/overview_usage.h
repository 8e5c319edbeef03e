// The usage text.
#pragma once

extern const char overview_usage[];
