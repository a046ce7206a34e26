// SPDX-License-Identifier: MIT
#include "ApiSequence.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtTest>

#ifndef GNSSPLOT_FUZZ_CORPUS
#define GNSSPLOT_FUZZ_CORPUS ""
#endif

// Replays the committed fuzz corpus and a few thousand seeded random call
// sequences against the reference model.
class tst_ApiSequence : public QObject
{
    Q_OBJECT
private slots:
    void corpus();
    void seeded();
};

void tst_ApiSequence::corpus()
{
    const QDir dir(QStringLiteral(GNSSPLOT_FUZZ_CORPUS));
    const QStringList files = dir.entryList(QDir::Files, QDir::Name);
    if (files.isEmpty())
        QSKIP("no committed corpus");
    for (const QString& name : files) {
        QFile file(dir.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const QString failure = runApiSequence(
            reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
        QVERIFY2(failure.isEmpty(), qPrintable(name + QStringLiteral(": ") + failure));
    }
}

void tst_ApiSequence::seeded()
{
    const int sequences = qEnvironmentVariableIntValue("GNSSPLOT_SEQUENCES") > 0
                              ? qEnvironmentVariableIntValue("GNSSPLOT_SEQUENCES")
                              : 3000;
    ApiSequenceStats stats;
    for (int seed = 0; seed < sequences; ++seed) {
        QRandomGenerator rng(quint32(seed) * 2654435761u + 1);
        QByteArray bytes(64 + int(rng.bounded(2048)), Qt::Uninitialized);
        for (char& c : bytes)
            c = char(rng.bounded(256));
        const QString failure = runApiSequence(
            reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()), &stats);
        QVERIFY2(failure.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + failure));
    }
    qInfo("%d sequences, %lld calls", sequences, stats.calls);
}

QTEST_MAIN(tst_ApiSequence)
#include "tst_apisequence.moc"
