// A set of PIDs, a bit each, whose members are found without looking at every PID.
#pragma once

#include "mpeg12_ts/packet.h"

#include <bit>
#include <cstdint>

class pid_set {
public:
    void insert(uint16_t pid)
    {
        words[pid / 64] |= bit(pid % 64);
        word_is_used[pid / 4096] |= bit(pid / 64 % 64);
    }

    void erase(uint16_t pid)
    {
        words[pid / 64] &= ~bit(pid % 64);
        if (words[pid / 64] == 0) word_is_used[pid / 4096] &= ~bit(pid / 64 % 64);
    }

    /// The first member from pid on, or mpeg_ts_pid_count when there is none.
    unsigned first_from(unsigned pid) const
    {
        if (pid >= mpeg_ts_pid_count) return mpeg_ts_pid_count;
        const uint64_t rest_of_word = words[pid / 64] >> (pid % 64);
        if (rest_of_word != 0) return pid + static_cast<unsigned>(std::countr_zero(rest_of_word));

        const unsigned word = first_used_word_from(pid / 64 + 1);
        if (word == word_count) return mpeg_ts_pid_count;
        return 64 * word + static_cast<unsigned>(std::countr_zero(words[word]));
    }

private:
    static constexpr unsigned word_count = mpeg_ts_pid_count / 64;

    static constexpr uint64_t bit(unsigned number) { return uint64_t{1} << number; }

    unsigned first_used_word_from(unsigned word) const
    {
        while (word < word_count) {
            const uint64_t rest = word_is_used[word / 64] >> (word % 64);
            if (rest != 0) return word + static_cast<unsigned>(std::countr_zero(rest));
            word = (word / 64 + 1) * 64;
        }
        return word_count;
    }

    uint64_t words[word_count] = {};
    uint64_t word_is_used[word_count / 64] = {};
};
