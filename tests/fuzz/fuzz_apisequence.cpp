// SPDX-License-Identifier: MIT
// libFuzzer entry point for the randomized call-sequence harness. Any
// violated promise or sanitizer report aborts the run with the input kept.
#include "ApiSequence.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: the platform plugin keeps screens it does not free.
    static QApplication* app = new QApplication(*argc, *argv);
    Q_UNUSED(app);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString failure = runApiSequence(data, size);
    if (!failure.isEmpty()) {
        std::fprintf(stderr, "violated: %s\n", qPrintable(failure));
        std::abort();
    }
    return 0;
}
