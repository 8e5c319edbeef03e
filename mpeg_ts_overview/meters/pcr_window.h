// Windows of successive PCRs of a PID, and the straight lines through them.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/meters/line_fit.h"
#include "mpeg_ts_overview/meters/residual_record.h"
#include "mpeg_ts_overview/model/pcr_facts.h"
#include "mpeg_ts_overview/model/violation_log.h"

#include <cstdint>
#include <optional>
#include <vector>

constexpr int64_t window_ticks = 10 * ticks_per_second;
constexpr size_t window_points = 4096;
constexpr size_t least_window_points = 20; ///< windows with fewer are not measured

/// Points without a disturbance between them.
class pcr_window {
public:
    struct point {
        uint64_t packet = 0;
        uint64_t byte = 0;
        int64_t ticks = 0; ///< of no meaning when the window is not timed
        int64_t pcr = 0;   ///< ticks since the first point's PCR
        int64_t arrival_ticks = 0;
    };

    /// The PCR of a packet, that many ticks of PCR behind the one before.
    void add(const ts_packet &packet, int64_t pcr_ticks);

    /// Points behind that packet are taken out. Returns true when none is left.
    bool drop_behind(uint64_t packet);

    void clear();

    /// True when the window spans its time or holds its points.
    bool full() const;

    size_t size() const { return points.size(); }
    const point &operator[](size_t i) const { return points[i]; }
    moment moment_of(size_t i) const;
    bool timed() const { return has_times; }
    bool arrived() const { return has_arrival; }
    /// True when its times are no clock's: it lies inside a time break.
    bool inside_break() const { return stretch < 0; }

private:
    std::vector<point> points;
    int64_t stretch = 0;
    bool has_times = true;
    bool has_arrival = true;
};

/// How straight the PCRs of a PID run, by packets and by arrival, and how fast.
struct pcr_straightness {
    residual_record over_index;
    residual_record over_arrival;
    std::optional<ppm_extent> rate_offset;
};

class pcr_fitter {
public:
    /// Residuals beyond the limit are written down.
    explicit pcr_fitter(double limit_ns) : limit(limit_ns) {}

    /// Measures a window of a PID when it holds enough points.
    void measure(const pcr_window &window, uint16_t pid, pcr_straightness *result);

    const violation_log &beyond_limit() const { return log; }

private:
    template <typename x_of_point>
    bool fit(const pcr_window &window, const x_of_point &x_of);
    void judge(const pcr_window &window, uint16_t pid);

    double limit;
    violation_log log;
    line_fit line;
    std::vector<line_point> points; ///< kept from window to window
};
