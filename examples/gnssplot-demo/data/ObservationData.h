// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_OBSERVATIONDATA_H
#define GNSSDEMO_OBSERVATIONDATA_H

#include <QString>
#include <QtGlobal>

#include <vector>

/*!
    \file ObservationData.h
    The host-side view of GNSS observations that the demo feeds its curve
    view and epoch table with. A source hands out one satellite at a time, so
    that a source may generate or decode its data on demand instead of
    keeping a whole day of every signal in memory.

    Times are GPST milliseconds since 1970-01-01 00:00:00 without leap
    seconds, the unit of the curve plot's time axis and of the epoch table.
*/
namespace gnssdemo {

/*! Frequency bands in the order of the epoch table's legend. */
enum Band {
    BandL1 = 0,  //!< L1 / G1 / B1 / E1 / J1
    BandL2 = 1,  //!< L2 / G2 / B2 / J2
    BandL5 = 2,  //!< L5 / G3 / B3 / E5a / J5
    BandE5b = 3, //!< E5b / B2a
    BandCount = 4
};

/*! The legend text of \a band ("L1/G1/B1/E1/J1" ...), empty when out of range. */
QString bandName(int band);

/*! How a GLONASS satellite's frequency channel number was obtained. */
enum class ChannelOrigin {
    NotGlonass, //!< not a GLONASS satellite: no channel
    Header,     //!< the file's "GLONASS SLOT / FRQ #" header
    Estimated,  //!< estimated from the ratio of code to carrier-phase change
    Default,    //!< the built-in slot table (neither of the above worked)
};

/*! The observations of one satellite on one band, one element per epoch of
    the source. Either all four vectors are empty (band not observed) or all
    have the source's epoch count. A band is observed when it has code or
    phase; signal strength alone does not make one. */
struct SignalSeries
{
    QString codeType;          //!< observation code of the pseudorange, e.g. "C1C", "P2"
    QString phaseType;         //!< observation code of the carrier phase, e.g. "L1C", "L2"
    /*! Observation code of the signal strength, e.g. "S1C"; empty when the
        band has none (RINEX 2 files often record none: their SSI digits are
        not turned into values). */
    QString snrType;
    double frequencyHz = 0.0;  //!< carrier frequency in hertz
    std::vector<double> pseudorange; //!< metres, NaN when missing
    std::vector<double> phase;       //!< cycles, NaN when missing
    std::vector<quint8> lli;         //!< loss-of-lock indicator of the phase, 0 when blank
    std::vector<double> snr;         //!< signal strength in dB-Hz, NaN when missing

    bool isEmpty() const { return pseudorange.empty(); }
    /*! True when epoch \a i holds a pseudorange or a phase on this band. */
    bool hasObservation(size_t i) const;
    /*! Sizes all vectors to \a epochs elements: NaN values, no LLI. */
    void reset(size_t epochs);
    void clear();
};

/*! Everything a source knows about one satellite. */
struct SatelliteObservations
{
    QString name;     //!< "G01", "R05", "E11", "C23", "J02", "S23" ...
    char system = 0;  //!< 'G', 'R', 'E', 'C', 'J', 'S', 'I'
    int prn = 0;
    int glonassChannel = 0; //!< frequency channel number k (GLONASS only)
    ChannelOrigin channelOrigin = ChannelOrigin::NotGlonass;
    /*! 1 where the satellite has a record at that epoch (even one whose values
        are all blank), else 0; the source's epoch count elements. */
    std::vector<quint8> record;
    SignalSeries bands[BandCount]; //!< indexed by Band

    /*! Number of epochs with a record. */
    qint64 recordCount() const;
    /*! Number of bands that hold data. */
    int observedBandCount() const;
    void clear();
};

/*!
    Where and why a file that was cut short stopped: it ended inside an epoch
    (that epoch is left out), inside a line, or its compressed stream ended
    early. Everything before is kept.
*/
struct ReadStop
{
    /*! The file's name, for the message; may be empty. */
    QString file;
    /*! 1-based line of the (expanded) text where the data ends; 0 when the
        file was read to its end. */
    qint64 line = 0;
    /*! What the file ends inside, e.g. "an epoch's satellite records" or "a
        line"; null when it ends after a whole line. A static text, marked for
        translation in the context "RinexReader". */
    const char* endsInside = nullptr;
    /*! True when the compressed (gzip) stream itself ended early. */
    bool compressedCut = false;
    /*! The complete epochs kept. */
    qint64 epochsKept = 0;

    /*! True when the file was cut short. */
    bool isCut() const { return line > 0; }
};

/*! The receiver's station as an observation file's header names it. */
struct StationInfo
{
    QString markerName;       //!< "MARKER NAME", empty when not given
    bool hasPosition = false; //!< an "APPROX POSITION XYZ" other than zeros was given
    double position[3] = {0, 0, 0}; //!< Earth-fixed X, Y, Z in metres
};

/*! A provider of observation epochs and per-satellite observations. */
class ObservationSource
{
public:
    virtual ~ObservationSource();
    /*! The station; no name and no position unless the source knows them. */
    virtual StationInfo station() const { return StationInfo(); }
    /*! One line telling what the data is, for titles and logs. */
    virtual QString description() const = 0;
    /*! Where reading stopped when the data was cut short; by default (and
        for a complete file) a ReadStop whose isCut() is false. */
    virtual ReadStop readStop() const;
    /*! Epoch times, ascending, GPST milliseconds since 1970-01-01. */
    virtual const std::vector<qint64>& epochs() const = 0;
    /*! The nominal spacing of epochs in milliseconds (> 0). */
    virtual qint64 intervalMs() const = 0;
    virtual int satelliteCount() const = 0;
    /*! Name of satellite \a index ("G01"), in ascending name order; empty
        when \a index is out of range. */
    virtual QString satelliteName(int index) const = 0;
    /*! Fills \a out with satellite \a index, reusing its buffers. Returns
        false and leaves \a out cleared when \a index is out of range. */
    virtual bool satellite(int index, SatelliteObservations& out) const = 0;
};

/*! A source that holds every satellite in memory (what the file reader
    produces). */
class MemoryObservationSource : public ObservationSource
{
public:
    MemoryObservationSource(QString description, std::vector<qint64> epochs,
                            qint64 intervalMs, std::vector<SatelliteObservations> satellites);
    QString description() const override { return m_description; }
    const std::vector<qint64>& epochs() const override { return m_epochs; }
    qint64 intervalMs() const override { return m_intervalMs; }
    int satelliteCount() const override { return int(m_satellites.size()); }
    QString satelliteName(int index) const override;
    bool satellite(int index, SatelliteObservations& out) const override;
    /*! Direct read access, without copying; null when out of range. */
    const SatelliteObservations* satelliteAt(int index) const;
    StationInfo station() const override { return m_station; }
    void setStation(const StationInfo& station) { m_station = station; }
    ReadStop readStop() const override { return m_readStop; }
    /*! Records where reading stopped (see ReadStop). */
    void setReadStop(const ReadStop& stop) { m_readStop = stop; }

private:
    StationInfo m_station;
    QString m_description;
    ReadStop m_readStop;
    std::vector<qint64> m_epochs;
    qint64 m_intervalMs;
    std::vector<SatelliteObservations> m_satellites;
};

/*! GPST milliseconds since 1970-01-01 of a calendar date and time of day
    (proleptic Gregorian, no leap seconds); \a seconds is rounded to the
    nearest millisecond. */
qint64 gpstMilliseconds(int year, int month, int day, int hour, int minute, double seconds);

/*! The most frequent step between consecutive epochs in milliseconds, or
    \a fallback when there are fewer than two epochs. */
qint64 typicalIntervalMs(const std::vector<qint64>& epochs, qint64 fallback);

// Signals ------------------------------------------------------------------

/*! Where a RINEX frequency digit of a system lands in the band order, and
    how preferred it is when two digits share a band (lower rank wins). */
struct BandSlot
{
    int band = -1;  //!< -1: the signal is not shown
    int rank = 0;
};

/*! Maps system \a system and RINEX frequency digit \a digit ('1' to '9') to
    a band. \a rinexVersion matters for BeiDou, whose B1I was coded '1' before
    version 3.02 and '2' since. */
BandSlot bandOfSignal(char system, char digit, double rinexVersion);

/*! Carrier frequency in hertz of system \a system's signal \a digit, for
    GLONASS FDMA signals on channel \a glonassChannel; 0 when unknown. */
double carrierFrequency(char system, char digit, int glonassChannel, double rinexVersion);

/*! The built-in GLONASS slot to channel table (slots 1 to 24); returns false
    for other slots, leaving \a channel untouched. */
bool defaultGlonassChannel(int slot, int* channel);

/*! Speed of light in metres per second. */
constexpr double SpeedOfLight = 299792458.0;

} // namespace gnssdemo

#endif // GNSSDEMO_OBSERVATIONDATA_H
