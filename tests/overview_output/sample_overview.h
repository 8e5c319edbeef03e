// An overview with something in every part, built by hand.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <initializer_list>

/// A moment at that many milliseconds, in the first stretch.
moment moment_at(uint64_t packet, int64_t milliseconds);

/// An extent of these values in milliseconds.
extent extent_of(std::initializer_list<int64_t> milliseconds);

overview sample_overview();

/// The same with texts that are no UTF-8 and have controls, and with numbers that are none.
overview hostile_overview();
