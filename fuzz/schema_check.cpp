#include "fuzz/schema_check.h"

#include "fuzz/overview_schema.h"
#include "fuzz/support.h"

#include "mpeg_ts_overview/output/json_values.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <regex>
#include <string>

namespace {

const ordered_json &whole_schema()
{
    static const ordered_json schema = ordered_json::parse(overview_schema_text);
    return schema;
}

bool holds(const ordered_json &value, const ordered_json &schema);

bool is_of_type(const ordered_json &value, const std::string &type)
{
    if (type == "null") return value.is_null();
    if (type == "boolean") return value.is_boolean();
    if (type == "integer") return value.is_number_integer();
    if (type == "number") return value.is_number();
    if (type == "string") return value.is_string();
    if (type == "array") return value.is_array();
    fuzz_promise(type == "object");
    return value.is_object();
}

bool is_of_types(const ordered_json &value, const ordered_json &types)
{
    if (types.is_string()) return is_of_type(value, types.get<std::string>());
    return std::any_of(types.begin(), types.end(),
                       [&](const ordered_json &type) { return is_of_type(value, type.get<std::string>()); });
}

bool has_members(const ordered_json &value, const ordered_json &names)
{
    if (!value.is_object()) return true;
    auto name = names.begin();
    for (const auto &member : value.items())
        if (name == names.end() || *name++ != member.key()) return false;
    return name == names.end();
}

bool members_hold(const ordered_json &value, const ordered_json &properties)
{
    if (!value.is_object()) return true;
    for (const auto &member : value.items())
        if (!properties.contains(member.key()) || !holds(member.value(), properties[member.key()]))
            return false;
    return true;
}

bool items_hold(const ordered_json &value, const ordered_json &schema)
{
    return !value.is_array() || std::all_of(value.begin(), value.end(),
                                            [&](const ordered_json &item) { return holds(item, schema); });
}

bool matches(const ordered_json &value, const std::string &pattern)
{
    static std::map<std::string, std::regex> patterns;
    if (!value.is_string()) return true;
    const auto place = patterns.try_emplace(pattern, pattern).first;
    return std::regex_search(value.get_ref<const std::string &>(), place->second);
}

const ordered_json &referred_to(const std::string &reference)
{
    const std::string beginning = "#/$defs/";
    fuzz_promise(reference.starts_with(beginning));
    return whole_schema().at("$defs").at(reference.substr(beginning.size()));
}

bool keyword_holds(const ordered_json &value, const std::string &keyword, const ordered_json &rule)
{
    const auto rule_holds = [&](const ordered_json &other) { return holds(value, other); };
    if (keyword == "type") return is_of_types(value, rule);
    if (keyword == "const") return value == rule;
    if (keyword == "enum") return std::find(rule.begin(), rule.end(), value) != rule.end();
    if (keyword == "minimum") return !value.is_number() || value >= rule;
    if (keyword == "maximum") return !value.is_number() || value <= rule;
    if (keyword == "minItems") return !value.is_array() || value.size() >= rule.get<size_t>();
    if (keyword == "maxItems") return !value.is_array() || value.size() <= rule.get<size_t>();
    if (keyword == "pattern") return matches(value, rule.get<std::string>());
    if (keyword == "required") return has_members(value, rule);
    if (keyword == "properties") return members_hold(value, rule);
    if (keyword == "items") return items_hold(value, rule);
    if (keyword == "$ref") return rule_holds(referred_to(rule.get<std::string>()));
    if (keyword == "oneOf") return std::count_if(rule.begin(), rule.end(), rule_holds) == 1;
    // Members that have no property are refused above; anything else only describes.
    if (keyword == "additionalProperties") return rule == false;
    fuzz_promise(keyword == "description" || keyword == "title" || keyword == "$schema" ||
                 keyword == "$defs");
    return true;
}

bool holds(const ordered_json &value, const ordered_json &schema)
{
    for (const auto &rule : schema.items())
        if (!keyword_holds(value, rule.key(), rule.value())) return false;
    return true;
}

/// The parser has seen to it that texts are UTF-8.
void promise_values(const ordered_json &value)
{
    constexpr double exact_below = 1e9; // with 6 decimals
    if (value.is_number_float()) {
        const auto number = value.get<double>();
        fuzz_promise(std::isfinite(number));
        fuzz_promise(std::fabs(number) > exact_below || six_decimals(number) == number);
    } else if (value.is_structured()) {
        for (const ordered_json &each : value) promise_values(each);
    }
}

} // namespace

void promise_schema(const ordered_json &value)
{
    fuzz_promise(holds(value, whole_schema()));
    promise_values(value);
}
