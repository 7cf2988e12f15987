// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/import_document.h"

#include "pdfcore/src/operations/import_layout.h"
#include "pdfcore/src/operations/import_picture.h"
#include "pdfcore/src/operations/picture_failure.h"
#include "pdfcore/src/operations/picture_profile.h"
#include "pdfcore/src/save/new_page_tree.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <utility>

#include <qpdf/Pipeline.hh>
#include <qpdf/QUtil.hh>

namespace pdfcore {

namespace {

constexpr qint64 kDigestBytes = qint64{64} << 10;

/// Decimal places of the numbers that place a picture, which are points.
constexpr int kDecimals = 4;

QPDFObjectHandle name(const char *text)
{
    return QPDFObjectHandle::newName(text);
}

QPDFObjectHandle number(qint64 value)
{
    return QPDFObjectHandle::newInteger(value);
}

PdfOperationOutcome outcomeOf(const PictureFailure &failure, const QString &path)
{
    const bool isCancelled = failure.error() == PdfOperationError::Cancelled;
    return {failure.error(), QString::fromUtf8(failure.what()), isCancelled ? QString() : path, {}};
}

void openForDigest(QFile &file)
{
    if (!file.open(QIODevice::ReadOnly)) {
        throw PictureFailure(PdfOperationError::FileNotFound, file.errorString());
    }
}

void addChunk(QFile &file, QCryptographicHash &hash)
{
    const QByteArray chunk = file.read(kDigestBytes);
    if (chunk.isEmpty()) {
        throw PictureFailure(PdfOperationError::FileNotFound, file.errorString());
    }
    hash.addData(chunk);
}

/// Tells most files apart that have one size.
QByteArray digestOfEnds(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    openForDigest(file);
    addChunk(file, hash);
    file.seek(std::max<qint64>(0, file.size() - kDigestBytes));
    addChunk(file, hash);
    return hash.result();
}

QByteArray digestOf(const QString &path, const PdfCancelFlag &cancel)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    openForDigest(file);
    while (!file.atEnd()) {
        throwIfCancelled(cancel);
        addChunk(file, hash);
    }
    return hash.result();
}

QPDFObjectHandle deviceSpace(int components)
{
    return name(components == 1 ? "/DeviceGray" : components == 3 ? "/DeviceRGB" : "/DeviceCMYK");
}

/// What /FlateDecode needs to know of rows with the predictors of PNG (ISO 32000-2, 7.4.4.3).
QPDFObjectHandle predictorParameters(int columns, int channels, int bits)
{
    QPDFObjectHandle parameters = QPDFObjectHandle::newDictionary();
    parameters.replaceKey("/Predictor", number(15));
    parameters.replaceKey("/Columns", number(columns));
    parameters.replaceKey("/Colors", number(channels));
    parameters.replaceKey("/BitsPerComponent", number(bits));
    return parameters;
}

/// What all images have in common (ISO 32000-2, 8.9.5).
QPDFObjectHandle imageDictionary(const ImportedPicture &picture, int bits)
{
    QPDFObjectHandle image = QPDFObjectHandle::newDictionary();
    image.replaceKey("/Type", name("/XObject"));
    image.replaceKey("/Subtype", name("/Image"));
    image.replaceKey("/Width", number(picture.pixels.width()));
    image.replaceKey("/Height", number(picture.pixels.height()));
    image.replaceKey("/BitsPerComponent", number(bits));
    return image;
}

void describeJpeg(QPDFObjectHandle image, const ImportedPicture &picture)
{
    image.replaceKey("/Filter", name("/DCTDecode"));
    if (picture.isUntransformed) {
        QPDFObjectHandle parameters = QPDFObjectHandle::newDictionary();
        parameters.replaceKey("/ColorTransform", number(0));
        image.replaceKey("/DecodeParms", parameters);
    }
    if (picture.isInverted) {
        image.replaceKey("/Decode", QPDFObjectHandle::parse("[1 0 1 0 1 0 1 0]"));
    }
}

std::string contentWith(const PictureMatrix &matrix)
{
    std::string content = "q ";
    for (const double value : matrix) {
        // There is no negative zero in it.
        content += QUtil::double_to_string(value + 0.0, kDecimals) + ' ';
    }
    return content + "cm /Im0 Do Q\n";
}

} // namespace

ImportDocument::ImportDocument(const PdfPictureImportOptions &options, const PdfCancelFlag &cancel)
    : m_options(options)
    , m_cancel(cancel)
{
    m_document.emptyPDF();
    m_document.setSuppressWarnings(true);
}

PdfOperationOutcome ImportDocument::addPage(const QString &path)
{
    try {
        throwIfCancelled(m_cancel);
        const Placed &picture = place(path);
        const QSizeF size = importPageSize(m_options);
        QPDFObjectHandle pictures = QPDFObjectHandle::newDictionary();
        pictures.replaceKey("/Im0", picture.image);
        QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
        resources.replaceKey("/XObject", pictures);
        QPDFObjectHandle page = QPDFObjectHandle::newDictionary();
        page.replaceKey("/Type", name("/Page"));
        page.replaceKey("/MediaBox", QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(
                                         0, 0, size.width(), size.height())));
        page.replaceKey("/Resources", resources);
        page.replaceKey("/Contents", contentFor(picture));
        m_pages.push_back(m_document.makeIndirectObject(page));
        return {};
    } catch (const PictureFailure &failure) {
        return outcomeOf(failure, path);
    }
}

QPDF &ImportDocument::finish()
{
    installPageTree(m_document, m_pages);
    return m_document;
}

PdfOperationOutcome ImportDocument::checkUnchanged() const
{
    for (const Placed &picture : m_pictures) {
        const FileIdentity now = FileIdentity::of(picture.file.path);
        if (!now.isSameRevision(picture.file)) {
            return {PdfOperationError::FileNotFound,
                    now.exists() ? QStringLiteral("The file was changed by another program.")
                                 : QStringLiteral("There is no such file."),
                    picture.file.path,
                    {}};
        }
    }
    return {};
}

ImportDocument::Placed &ImportDocument::place(const QString &path)
{
    if (const auto known = m_byPath.constFind(path); known != m_byPath.constEnd()) {
        return m_pictures[*known];
    }
    Placed placed;
    placed.file = FileIdentity::of(path);
    if (const Placed *equal = findEqual(placed)) {
        placed.image = equal->image;
        placed.pixels = equal->pixels;
        placed.orientation = equal->orientation;
    } else {
        const ImportedPicture picture = inspectPicture(path, m_cancel);
        placed.image = newImage(path, picture);
        placed.pixels = picture.pixels;
        placed.orientation = picture.orientation;
        m_sourceBytes += placed.file.size;
    }
    m_byPath.insert(path, m_pictures.size());
    m_bySize.insert(placed.file.size, m_pictures.size());
    m_pictures.push_back(std::move(placed));
    return m_pictures.back();
}

/// The picture in the document that has the same bytes, if there is one.
ImportDocument::Placed *ImportDocument::findEqual(Placed &picture)
{
    if (picture.file.size <= 0) {
        return nullptr;
    }
    const auto [first, last] = m_bySize.equal_range(picture.file.size);
    for (auto at = first; at != last; ++at) {
        Placed &other = m_pictures[*at];
        for (Placed *each : {&picture, &other}) {
            if (each->ends.isEmpty()) {
                each->ends = digestOfEnds(each->file.path);
            }
        }
        if (picture.ends != other.ends) {
            continue;
        }
        for (Placed *each : {&picture, &other}) {
            if (each->digest.isEmpty()) {
                each->digest = digestOf(each->file.path, m_cancel);
            }
        }
        if (picture.digest == other.digest) {
            return &other;
        }
    }
    return nullptr;
}

QPDFObjectHandle ImportDocument::newImage(const QString &path, const ImportedPicture &picture)
{
    QPDFObjectHandle image = imageDictionary(picture, picture.bits);
    image.replaceKey("/ColorSpace", colourSpace(path, picture));
    if (picture.coding == PictureCoding::Jpeg) {
        describeJpeg(image, picture);
    } else {
        image.replaceKey("/Filter", name("/FlateDecode"));
        image.replaceKey("/DecodeParms", predictorParameters(picture.pixels.width(),
                                                             picture.channels(), picture.bits));
    }
    if (picture.maskBits > 0) {
        QPDFObjectHandle mask = imageDictionary(picture, picture.maskBits);
        mask.replaceKey("/ColorSpace", deviceSpace(1));
        mask.replaceKey("/Filter", name("/FlateDecode"));
        mask.replaceKey("/DecodeParms",
                        predictorParameters(picture.pixels.width(), 1, picture.maskBits));
        image.replaceKey("/SMask", newStream(path, picture.coding, &writePictureMask, mask));
    }
    return newStream(path, picture.coding, &writePictureSamples, image);
}

/// A stream whose data come from the file when they are written, as they then are.
QPDFObjectHandle ImportDocument::newStream(const QString &path, PictureCoding coding, Part part,
                                           QPDFObjectHandle dictionary)
{
    QPDFObjectHandle stream = QPDFObjectHandle::newStream(&m_document);
    stream.replaceDict(dictionary);
    stream.replaceStreamData(
        [this, path, coding, part](Pipeline *pipeline) {
            provide(
                path, [&](const ByteSink &sink) { part(path, coding, sink, m_cancel); }, *pipeline);
        },
        QPDFObjectHandle(), QPDFObjectHandle());
    stream.setFilterOnWrite(false);
    return stream;
}

void ImportDocument::provide(const QString &path,
                             const std::function<void(const ByteSink &sink)> &write,
                             Pipeline &pipeline)
{
    try {
        write([&pipeline](const unsigned char *bytes, std::size_t count) {
            pipeline.write(bytes, count);
        });
    } catch (const PictureFailure &failure) {
        m_failure = outcomeOf(failure, path);
        throw;
    }
    pipeline.finish();
}

QPDFObjectHandle ImportDocument::colourSpace(const QString &path, const ImportedPicture &picture)
{
    QPDFObjectHandle space = deviceSpace(picture.components);
    if (QPDFObjectHandle profile = profileStream(path, picture); profile.isStream()) {
        space = QPDFObjectHandle::newArray({name("/ICCBased"), profile});
    }
    if (picture.palette.isEmpty()) {
        return space;
    }
    return QPDFObjectHandle::newArray({name("/Indexed"), space,
                                       number(picture.palette.size() / 3 - 1),
                                       QPDFObjectHandle::newString(picture.palette.toStdString())});
}

/// The profile of the picture in the document (ISO 32000-2, 8.6.5.5), or null.
QPDFObjectHandle ImportDocument::profileStream(const QString &path, const ImportedPicture &picture)
{
    if (picture.profile.isEmpty()) {
        return QPDFObjectHandle::newNull();
    }
    const QByteArray key = QCryptographicHash::hash(picture.profile, QCryptographicHash::Sha256) +
                           QByteArray::number(picture.components);
    if (const auto known = m_profiles.constFind(key); known != m_profiles.constEnd()) {
        return *known;
    }
    QPDFObjectHandle stream = QPDFObjectHandle::newNull();
    if (isProfileFor(picture.profile, picture.components)) {
        stream = QPDFObjectHandle::newStream(&m_document);
        stream.getDict().replaceKey("/N", number(picture.components));
        stream.getDict().replaceKey("/Alternate", deviceSpace(picture.components));
        stream.replaceStreamData(
            [this, path](Pipeline *pipeline) {
                provide(
                    path,
                    [&](const ByteSink &sink) {
                        const QByteArray profile = inspectPicture(path, m_cancel).profile;
                        sink(reinterpret_cast<const unsigned char *>(profile.constData()),
                             static_cast<std::size_t>(profile.size()));
                    },
                    *pipeline);
            },
            QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    }
    m_profiles.insert(key, stream);
    return stream;
}

/// The content of a page with the picture. Pages that look alike have one together.
QPDFObjectHandle ImportDocument::contentFor(const Placed &picture)
{
    const std::string content =
        contentWith(importMatrix(picture.pixels, picture.orientation, importArea(m_options)));
    const QByteArray key = QByteArray::fromStdString(content);
    if (const auto known = m_contents.constFind(key); known != m_contents.constEnd()) {
        return *known;
    }
    QPDFObjectHandle stream = QPDFObjectHandle::newStream(&m_document, content);
    m_contents.insert(key, stream);
    return stream;
}

} // namespace pdfcore
