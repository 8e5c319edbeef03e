// What the programme guides of the comparison say of an event.
#pragma once

#include "tests/support/hex.h"

#include <string>

/// A text behind its length byte.
bytes counted(const std::string &text);

/// A story of that many sentences, another for each number.
std::string story_of(unsigned number, unsigned sentences);

/// The descriptors of an event: its name, what happens in it, its kind, three components.
bytes event_descriptors(const std::string &name, const std::string &story);
