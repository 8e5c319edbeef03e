// Standard input, output and error.
#pragma once

#include <string>

/// Fills the places of those that are closed with what can neither be read nor written as they are, so that
/// no other file gets there.
void standard_streams_hold_their_places();

/// Says on standard error why the run ends with status 1, which is returned. Controls in the reason, as of a
/// file's name, are left out.
int say_failure(const std::string &reason);
