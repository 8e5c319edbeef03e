// Whether JSON is what docs/overview.schema.json says of it, and stands in its order.
#pragma once

#include <nlohmann/json.hpp>

/// Promises that the value holds against the schema, by the keywords that the schema uses; that the members
/// of each object are those of its "required", in that order; and that no number has more than 6 decimals.
void promise_schema(const nlohmann::ordered_json &value);
