// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <memory>

namespace pdfcore {

/// What a PNG file says about its picture before the image data.
struct PngHeader
{
    int width = 0;
    int height = 0;
    int bits = 8;
    int channels = 1;             ///< Samples of one pixel, with that of alpha; 1 with a palette.
    bool hasAlpha = false;        ///< One of the channels is alpha.
    bool hasTransparency = false; ///< There is a chunk tRNS, and no alpha channel.
    bool isInterlaced = false;
    QByteArray palette; ///< Three bytes for each colour; empty without a palette.
    QByteArray profile; ///< Of the chunk iCCP; may be empty.
    QByteArray exif;    ///< Of the chunk eXIf before the image data; may be empty.

    /// Bytes of a row of the image data.
    [[nodiscard]] qint64 rowBytes() const { return (qint64{width} * channels * bits + 7) / 8; }
};

/// Reads a PNG file row by row with libpng. For one thread; throws PictureFailure.
class PngRowReader final
{
public:
    /// What a row is made of.
    enum class Samples {
        Stored,    ///< As in the file.
        WithAlpha, ///< 8 or 16 bits each with alpha as the last one, made from tRNS if need be.
    };

    /// Opens the file and reads as far as the image data.
    explicit PngRowReader(const QString &path);
    ~PngRowReader();
    PngRowReader(const PngRowReader &) = delete;
    PngRowReader &operator=(const PngRowReader &) = delete;

    [[nodiscard]] const PngHeader &header() const { return m_header; }

    /// Begins with the rows; to be called once, before readRow().
    void start(Samples samples);
    [[nodiscard]] qsizetype rowBytes() const { return m_rowBytes; }
    /// How often all rows are to be read, one pass after the other: each one of an interlaced
    /// picture adds some pixels to the rows.
    [[nodiscard]] int passes() const { return m_passes; }
    /// Reads the next row into `row`, which has what earlier passes left there, or passes it over
    /// if that is null.
    void readRow(unsigned char *row);

private:
    struct Library;

    bool readHeader();
    bool startRows(bool withAlpha);
    void takeHeader();

    QFile m_file;
    std::unique_ptr<Library> m_library;
    PngHeader m_header;
    qsizetype m_rowBytes = 0;
    int m_passes = 1;
};

} // namespace pdfcore
