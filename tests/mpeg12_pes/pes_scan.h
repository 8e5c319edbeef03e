// One scan over a block of exactly the size of its bytes.
#pragma once

#include "tests/support/hex.h"

#include "mpeg12_pes/pes_scanner.h"

#include <gtest/gtest.h>

class pes_scan {
public:
    explicit pes_scan(const bytes &content) : block(content), pes(mpeg_pes_create())
    {
        next = mpeg_pes_scan(pes, block.data(), fence());
    }
    ~pes_scan() { mpeg_pes_destroy(pes); }
    pes_scan(const pes_scan &) = delete;
    pes_scan &operator=(const pes_scan &) = delete;

    /// Scans on from where the last scan ended.
    void again() { next = mpeg_pes_scan(pes, next, fence()); }

    const uint8_t *fence() const { return block.data() + block.size(); }
    long offset(const uint8_t *p) const { return p - block.data(); }

    const mpeg_pes *operator->() const { return pes; }

private:
    const bytes block;
    mpeg_pes *const pes;

public:
    const uint8_t *next = nullptr;
};
