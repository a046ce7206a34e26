// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_QUALITYTEXT_H
#define GNSSDEMO_QUALITYTEXT_H

#include <QString>

namespace gnssdemo {

class DemoHost;

/*!
    The quality summary of what \a host holds as plain text in columns, one
    row per satellite, one per system and one for all, then the number of
    satellites per epoch: epochs with data, epochs above the 10 degree mask
    and the completeness there ("-" without elevations), MP1 and MP2 RMS in
    metres ("-" without a curve), slips (loss of lock plus phase jumps),
    gaps, and the observations of MP1 and MP2. English, for files and logs;
    empty when nothing is loaded.
*/
QString qualityTableText(const DemoHost& host);

} // namespace gnssdemo

#endif // GNSSDEMO_QUALITYTEXT_H
