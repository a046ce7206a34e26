// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TESTS_APISEQUENCE_H
#define GNSSPLOT_TESTS_APISEQUENCE_H

#include <QString>

#include <cstddef>
#include <cstdint>

struct ApiSequenceStats
{
    qint64 calls = 0;
};

// Decodes \a data into a sequence of public calls on the library's classes,
// runs it, and checks after every call what the classes promise. Returns an
// empty string on success, otherwise a description of the first violation.
QString runApiSequence(const uint8_t* data, size_t size, ApiSequenceStats* stats = nullptr);

#endif // GNSSPLOT_TESTS_APISEQUENCE_H
