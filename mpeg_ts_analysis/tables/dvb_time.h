// Dates of DVB, EN 300 468 Annex C.
#pragma once

struct dvb_date {
    int year;  ///< in full
    int month; ///< 1 to 12
    int day;   ///< 1 to 31
};

/// The date of a 16-bit Modified Julian Date (0 to 0xFFFF), by the annex's arithmetic for every value: before
/// 1900-03-01, where that takes 1900 for a leap year, it is one day ahead of the calendar.
dvb_date dvb_date_of_mjd(unsigned mjd);
