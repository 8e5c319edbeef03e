// Dates of DVB, EN 300 468 Annex C.
#pragma once

struct dvb_date {
    int year;  ///< in full
    int month; ///< 1 to 12 for a Modified Julian Date from 1900-03-01 on
    int day;   ///< 1 to 31 for the same
};

/// The date of a 16-bit Modified Julian Date, by the annex's arithmetic for every value.
dvb_date dvb_date_of_mjd(unsigned mjd);
