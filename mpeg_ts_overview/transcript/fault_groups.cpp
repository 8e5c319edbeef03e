#include "mpeg_ts_overview/transcript/fault_groups.h"

#include <algorithm>

namespace {

/// The group of what finds no room.
constexpr uint32_t no_group = fault_group_limit;

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

bool is_hexadecimal(char c)
{
    return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// The size of the number at the front of the text; 0 when there is none.
size_t size_of_number(std::string_view text)
{
    if (text.size() > 2 && text[0] == '0' && text[1] == 'x' && is_hexadecimal(text[2])) {
        size_t size = 3;
        while (size < text.size() && is_hexadecimal(text[size])) ++size;
        return size;
    }
    size_t size = 0;
    while (size < text.size() && is_digit(text[size])) ++size;
    if (size == 0 || size + 1 >= text.size() || text[size] != '.' || !is_digit(text[size + 1])) return size;
    ++size;
    while (size < text.size() && is_digit(text[size])) ++size;
    return size;
}

bool names_fault(std::string_view line)
{
    const size_t first = line.find_first_not_of(" \t");
    return first != std::string_view::npos && line.substr(first, 2) == "!!";
}

} // namespace

std::string without_numbers(std::string_view line)
{
    std::string words;

    for (size_t i = 0; i < line.size();) {
        const bool signed_number = line[i] == '-' && (i == 0 || line[i - 1] == ' ');
        const size_t size = size_of_number(line.substr(i + (signed_number ? 1 : 0)));
        if (size == 0) {
            words += line[i++];
        } else {
            words += '#';
            i += size + (signed_number ? 1 : 0);
        }
    }
    return words;
}

fault_tally fault_groups::in_text(std::string_view text, const table_section &section)
{
    fault_tally faults;

    if (text.find("!!") == std::string_view::npos) return faults;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (!names_fault(line)) continue;

        const uint32_t group = group_of(line, section);
        const auto known = std::find_if(faults.begin(), faults.end(),
                                        [group](const fault_share &share) { return share.group == group; });
        if (known != faults.end())
            ++known->lines;
        else
            faults.push_back({group, 1});
    }
    return faults;
}

uint32_t fault_groups::group_of(std::string_view line, const table_section &section)
{
    std::string words = without_numbers(line);
    words += '\n';
    words += std::to_string(section.pid) + ' ' + std::to_string(section.header.table_id);

    const auto known = with_words.find(words);
    if (known != with_words.end()) return known->second;
    if (groups.size() >= fault_group_limit) return no_group;

    const auto number = static_cast<uint32_t>(groups.size());
    with_words.emplace(std::move(words), number);
    fault_group &group = groups.emplace_back();
    group.text = line;
    group.pid = section.pid;
    group.table_id = section.header.table_id;
    group.first = section.at;
    return number;
}

void fault_groups::count(const fault_tally &faults, const table_section &section)
{
    for (const fault_share &share : faults) {
        if (share.group == no_group) {
            lines_not_kept += share.lines;
            continue;
        }
        fault_group &group = groups[share.group];
        group.count += share.lines;
        group.last = section.at;
        const bool noted = !group.packets.empty() && group.packets.back() == section.at.packet;
        if (!noted && group.packets.size() < fault_packet_limit) group.packets.push_back(section.at.packet);
    }
}
