// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/document_session.h"

#include "pdfcore/src/mupdf/broken_images.h"
#include "pdfcore/src/mupdf/mupdf_file_stream.h"
#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/mupdf/protection.h"
#include "pdfcore/src/qpdf/password_candidates.h"
#include "pdfcore/src/qpdf/qpdf_copy.h"
#include "pdfcore/src/qpdf/qpdf_protection.h"
#include "pdfcore/src/qpdf/qpdf_source.h"
#include "pdfcore/src/render/page_bands.h"
#include "pdfcore/src/render/page_images.h"
#include "pdfcore/src/render/page_painter.h"
#include "pdfcore/src/render/recorded_page.h"
#include "pdfcore/src/session/object_places.h"

#include <QFile>
#include <QTemporaryFile>

#include <algorithm>
#include <cmath>
#include <future>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace pdfcore {

namespace {

/// Bytes that nested transparency groups may need for each pixel of the target, on top of the
/// budget: four copies with an alpha channel.
constexpr std::size_t kGroupBytes = 16;

/// Pixels up to which a page has the usual time: A4 paper at 300 dpi.
constexpr qint64 kUsualPixels = qint64{2480} * 3508;

/// Kids of one node from which reading them is shared between two threads.
constexpr std::size_t kManyKids = 2000;

void writeToDevice(fz_context *ctx, void *state, const void *data, size_t length)
{
    const auto size = static_cast<qint64>(length);
    if (static_cast<QIODevice *>(state)->write(static_cast<const char *>(data), size) != size) {
        fz_throw(ctx, FZ_ERROR_GENERIC, "the file cannot be written");
    }
}

int64_t positionOfDevice(fz_context * /*ctx*/, void *state)
{
    return static_cast<QIODevice *>(state)->pos();
}

/// Takes out the objects that cannot be read, over which writing would fail.
void dropBrokenObjects(fz_context *ctx, pdf_document *document)
{
    const int count = pdf_xref_len(ctx, document);
    for (int number = 1; number < count; ++number) {
        fz_try(ctx)
        {
            pdf_drop_obj(ctx, pdf_load_object(ctx, document, number));
        }
        fz_catch(ctx)
        {
            if (fz_caught(ctx) == kOutOfMemoryError) {
                fz_rethrow(ctx);
            }
            pdf_delete_object(ctx, document, number);
        }
    }
}

} // namespace

DocumentSession::DocumentSession(const FileIdentity &file, const QString &password,
                                 const SessionBudgets &budgets,
                                 std::shared_ptr<QTemporaryFile> copy)
    : m_file(file)
    , m_password(password)
    , m_budgets(budgets)
    , m_copy(std::move(copy))
{}

DocumentSession::~DocumentSession()
{
    if (m_context.get() == nullptr) {
        return;
    }
    if (m_document != nullptr && m_pages) {
        m_context.run(
            [&](fz_context *ctx) {
                releasePageMap(ctx, m_document, m_pages->pageNumbers, m_pages->isOfFile);
            },
            nullptr);
    }
    pdf_drop_document(m_context.get(), m_document);
    m_colourSpaces.reset();
}

std::unique_ptr<DocumentSession>
DocumentSession::open(const FileIdentity &file, const QString &password,
                      const SessionBudgets &budgets, EngineError *outcome,
                      std::shared_ptr<const PageTree> pages, Damage damage)
{
    BudgetBreach breach = BudgetBreach::None;
    const std::shared_ptr<QTemporaryFile> copy = pages ? pages->copy : nullptr;
    auto session = openAsItIs(file, password, budgets, std::move(pages), copy, &breach, outcome);
    const bool mayBeDamaged = session || outcome->code == PdfBackendError::InvalidDocument;
    if (!mayBeDamaged || copy || breach != BudgetBreach::None || damage == Damage::Refuse ||
        (session && session->isComplete())) {
        return session;
    }
    EngineError ofCopy;
    auto repaired = openCopy(file, password, budgets, &ofCopy);
    if (repaired && (!session || repaired->pageCount() >= session->pageCount())) {
        *outcome = ofCopy;
        return repaired;
    }
    const bool needsPassword = ofCopy.code == PdfBackendError::PasswordRequired ||
                               ofCopy.code == PdfBackendError::InvalidPassword;
    if (needsPassword && !(session && session->isEncrypted())) {
        *outcome = ofCopy;
        return nullptr;
    }
    return session;
}

std::unique_ptr<DocumentSession>
DocumentSession::openAsItIs(const FileIdentity &file, const QString &password,
                            const SessionBudgets &budgets, std::shared_ptr<const PageTree> pages,
                            std::shared_ptr<QTemporaryFile> copy, BudgetBreach *breach,
                            EngineError *outcome)
{
    std::unique_ptr<DocumentSession> session(
        new DocumentSession(file, password, budgets, std::move(copy)));
    if (session->m_context.get() == nullptr) {
        *outcome = {PdfBackendError::InvalidDocument, QStringLiteral("Not enough memory.")};
        *breach = BudgetBreach::Memory;
        return nullptr;
    }
    session->m_colourSpaces = std::make_unique<ColourSpaces>(session->m_context);
    session->m_context.beginWork(budgets.open);
    session->m_pages = std::move(pages);
    *outcome = session->openDocument();
    if (!outcome->isError() && !session->m_pages) {
        *outcome = session->readPageTree();
    }
    if (!outcome->isError()) {
        *outcome = session->usePages();
    }
    *breach = session->m_context.endWork();
    // What was refused memory or time may have passed for something that is not there.
    if (*breach != BudgetBreach::None) {
        *outcome = session->budgetError(*breach, PdfBackendError::InvalidDocument);
    }
    if (outcome->isError()) {
        return nullptr;
    }
    return session;
}

/// Opens a copy that QPDF makes of the file.
std::unique_ptr<DocumentSession> DocumentSession::openCopy(const FileIdentity &file,
                                                           const QString &password,
                                                           const SessionBudgets &budgets,
                                                           EngineError *outcome)
{
    // QPDF's memory cannot be counted, but it grows with the file.
    if (file.size < 0 || static_cast<std::size_t>(file.size) > budgets.open.bytes) {
        *outcome = {PdfBackendError::InvalidDocument, QStringLiteral("The file is too large.")};
        return nullptr;
    }
    std::shared_ptr<QTemporaryFile> copy =
        newReadableCopy(file.path, password, QDeadlineTimer(budgets.open.time), outcome);
    if (!copy) {
        return nullptr;
    }
    BudgetBreach breach = BudgetBreach::None;
    return openAsItIs(file, password, budgets, {}, std::move(copy), &breach, outcome);
}

/// Whether the document has pages, and all objects that there are.
bool DocumentSession::isComplete()
{
    return pageCount() > 0 &&
           !(m_pages->isRepaired && hasLostObjects(m_context, m_document, m_file.path, m_password,
                                                   QDeadlineTimer(m_budgets.open.time)));
}

bool DocumentSession::isEncrypted()
{
    return !protectionOf(m_context, m_document).isEmpty();
}

QString DocumentSession::contentPath() const
{
    return m_copy ? m_copy->fileName() : m_file.path;
}

EngineError DocumentSession::openDocument()
{
    if (!m_file.exists()) {
        return {PdfBackendError::FileNotFound, QFile::exists(m_file.path)
                                                   ? QStringLiteral("This is not a file.")
                                                   : QStringLiteral("There is no such file.")};
    }
    QString reason;
    fz_stream *stream = openFileStream(m_context, contentPath(), &reason);
    if (stream == nullptr) {
        return {PdfBackendError::FileNotFound, reason};
    }

    pdf_document *document = nullptr;
    const bool opened = m_context.run(
        [&](fz_context *ctx) { document = pdf_open_document_with_stream(ctx, stream); }, &reason);
    fz_drop_stream(m_context.get(), stream);
    m_document = document;
    if (!opened) {
        if (reason.contains(QLatin1String("encryption handler"))) {
            reason = QStringLiteral("The file is encrypted for certificates or by another "
                                    "handler that is not supported (%1).")
                         .arg(reason);
        }
        return {PdfBackendError::InvalidDocument, reason};
    }
    return unlock();
}

EngineError DocumentSession::unlock()
{
    // A password that is given comes first: each that is tried takes its time.
    if (!m_password.isEmpty() && authenticate()) {
        return {};
    }
    int needed = 0;
    QString reason;
    if (!m_context.run([&](fz_context *ctx) { needed = pdf_needs_password(ctx, m_document); },
                       &reason)) {
        return {PdfBackendError::InvalidDocument, reason};
    }
    if (needed == 0 || (m_password.isEmpty() && authenticate()) || unlockByQpdf()) {
        return {};
    }
    if (m_password.isEmpty()) {
        return {PdfBackendError::PasswordRequired, QStringLiteral("The file is encrypted.")};
    }
    return {PdfBackendError::InvalidPassword, QStringLiteral("The password does not fit.")};
}

bool DocumentSession::authenticate()
{
    for (const QByteArray &candidate : mupdfPasswordCandidates(m_password)) {
        const char *spelling = candidate.constData();
        int accepted = 0;
        const bool ran = m_context.run(
            [&](fz_context *ctx) {
                accepted = pdf_authenticate_password(ctx, m_document, spelling);
            },
            nullptr);
        if (ran && accepted != 0) {
            return true;
        }
    }
    return false;
}

std::shared_ptr<QPDF> DocumentSession::openProtection(EngineError *outcome)
{
    return openProtection(m_password, outcome);
}

std::shared_ptr<QPDF> DocumentSession::openProtection(const QString &password, EngineError *outcome)
{
    const QByteArray protection = protectionOf(m_context, m_document);
    *outcome = {};
    return protection.isEmpty() ? nullptr : openQpdf(protection, password, outcome);
}

/// Takes the file key from QPDF where it opens the document and MuPDF does not; none is needed
/// where only the attachments are encrypted, which it opens without a password. Up to revision 4
/// MuPDF turns every password into PDFDocEncoding, which has no letters for the UTF-8 bytes of many
/// scripts; QPDF takes the bytes as they are. And an empty password is none to MuPDF unless it is
/// the user's, though the owner's may be empty too.
bool DocumentSession::unlockByQpdf()
{
    constexpr int kLastRevisionWithDocEncoding = 4;
    fz_context *ctx = m_context.get();
    const bool isSpelledAlike = encryptionRevision(ctx, m_document) > kLastRevisionWithDocEncoding;
    EngineError outcome;
    const std::shared_ptr<QPDF> protection =
        openProtection(isSpelledAlike ? QString() : m_password, &outcome);
    return protection && (!hasKey(*protection) ||
                          replaceFileKey(ctx, m_document, protection->getEncryptionKey()));
}

EngineError DocumentSession::readPageTree()
{
    bool hasTree = false;
    QString reason;
    std::optional<PageTree> tree = collectPages(&hasTree, &reason);
    if (tree && tree->pageNumbers.empty() && pdf_was_repaired(m_context.get(), m_document) == 0) {
        // The cross-reference table was readable but led nowhere: look for the objects themselves.
        m_context.run([&](fz_context *ctx) { repairDocument(ctx, m_document); }, nullptr);
        tree = collectPages(&hasTree, &reason);
    }
    if (!tree) {
        return {PdfBackendError::InvalidDocument, reason};
    }
    if (!hasTree) {
        return {PdfBackendError::InvalidDocument, QStringLiteral("The file has no page tree.")};
    }
    tree->copy = m_copy;
    m_pages = std::make_shared<const PageTree>(std::move(*tree));
    return {};
}

std::optional<PageTree> DocumentSession::collectPages(bool *hasTree, QString *reason)
{
    const int repairsBefore = pdf_was_repaired(m_context.get(), m_document);
    std::vector<PageTreeKid> rootKids = readManyKids();
    PageTree tree;
    bool walked = walkPageTree(m_context, m_document, rootKids, &tree, hasTree, reason);
    if (pdf_was_repaired(m_context.get(), m_document) != repairsBefore) {
        // What was read before the repair may be other objects now.
        tree = {};
        walked = walkPageTree(m_context, m_document, {}, &tree, hasTree, reason);
    }
    if (!walked) {
        return std::nullopt;
    }
    return tree;
}

EngineError DocumentSession::usePages()
{
    QString reason;
    if (!m_context.run(
            [&](fz_context *ctx) { installPageMap(ctx, m_document, m_pages->pageNumbers); },
            &reason)) {
        return {PdfBackendError::InvalidDocument, reason};
    }
    return {};
}

/// The kids of a root that has many of them, read by two threads; empty for any other.
std::vector<PageTreeKid> DocumentSession::readManyKids()
{
    const std::vector<int> numbers = rootKidNumbers(m_context, m_document);
    if (numbers.size() < kManyKids || std::thread::hardware_concurrency() < 2) {
        return {};
    }
    std::vector<PageTreeKid> kids(numbers.size());
    const std::size_t half = numbers.size() / 2;
    const auto readSecondHalf = [&] {
        DocumentSession twin(m_file, m_password, m_budgets, m_copy);
        if (twin.m_context.get() == nullptr) {
            return;
        }
        twin.m_context.beginWork(m_budgets.open);
        if (!twin.openDocument().isError()) {
            readKids(twin.m_context, twin.m_document, numbers, half, numbers.size(), kids);
        }
        twin.m_context.endWork();
    };
    std::future<void> secondHalf;
    try {
        secondHalf = std::async(std::launch::async, readSecondHalf);
    } catch (const std::system_error &) {
        // Without another thread the walk reads that half itself.
    }
    readKids(m_context, m_document, numbers, 0, half, kids);
    if (secondHalf.valid()) {
        secondHalf.wait();
    }
    return kids;
}

WorkBudget DocumentSession::pageBudget(const SessionBudgets &budgets, QSize targetSize,
                                       QSize imageSize)
{
    WorkBudget budget = budgets.page;
    budget.bytes += kGroupBytes * static_cast<std::size_t>(imageSize.width()) *
                    static_cast<std::size_t>(imageSize.height());
    const qint64 pixels = qint64{targetSize.width()} * targetSize.height();
    if (pixels > kUsualPixels) {
        const double growth = static_cast<double>(pixels) / kUsualPixels;
        budget.time = std::chrono::milliseconds(
            std::llround(static_cast<double>(budget.time.count()) * growth));
    }
    return budget;
}

/// Runs `body`, which may throw MuPDF errors, for a page within the budget, and once more when it
/// failed over images that cannot be loaded. False when it failed.
template <typename Body>
bool DocumentSession::work(int pageIndex, const WorkBudget &budget, const fz_cookie &cookie,
                           Body &&body, EngineError *outcome)
{
    QString reason;
    m_context.beginWork(budget);
    bool done = m_context.run(body, &reason);
    if (!done && cookie.abort == 0 && !m_context.isOutOfTime() && dropBrokenImages(pageIndex)) {
        done = m_context.run(body, &reason);
    }
    BudgetBreach breach = m_context.endWork();
    if (breach == BudgetBreach::None && cookie.abort != 0) {
        breach = BudgetBreach::Time;
    }
    if (breach != BudgetBreach::None) {
        m_usable = false;
        *outcome = budgetError(breach, PdfBackendError::RenderFailed);
        return false;
    }
    *outcome = done ? EngineError{} : EngineError{PdfBackendError::RenderFailed, reason};
    return done;
}

/// Calls `body` with the page at an index that there is; throws MuPDF errors.
template <typename Body>
void DocumentSession::withPage(fz_context *ctx, int pageIndex, Body &&body)
{
    const int number = m_pages->pageNumbers[static_cast<std::size_t>(pageIndex)];
    pdf_obj *object = pdf_load_object(ctx, m_document, number);
    pdf_page *page = nullptr;
    fz_var(page);
    fz_try(ctx)
    {
        normalisePageBoxes(ctx, object);
        keepSignatureAppearances(ctx, object);
        m_colourSpaces->prepare(m_document, object);
        page = loadPage(ctx, m_document, pageIndex, object, m_pages->pageNumbers);
        body(page);
    }
    fz_always(ctx)
    {
        dropPage(ctx, page);
        pdf_drop_obj(ctx, object);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

bool DocumentSession::hasPage(int pageIndex, EngineError *outcome) const
{
    if (pageIndex >= 0 && pageIndex < pageCount()) {
        return true;
    }
    *outcome = {PdfBackendError::RenderFailed,
                QStringLiteral("The file has no page %1.").arg(qint64{pageIndex} + 1)};
    return false;
}

QImage DocumentSession::render(int pageIndex, int rotation, QSize targetSize, EngineError *outcome,
                               const std::atomic<bool> *cancelled)
{
    if (!hasPage(pageIndex, outcome)) {
        return {};
    }
    QImage image(targetSize, kPageImageFormat);
    if (image.isNull()) {
        *outcome = noMemoryFor(targetSize);
        return {};
    }
    fz_cookie cookie{};
    PageImages images(m_context);
    WorkBudget budget = pageBudget(m_budgets, targetSize, targetSize);
    budget.cancelled = cancelled;
    const bool painted = work(
        pageIndex, budget, cookie,
        [&](fz_context *ctx) {
            withPage(ctx, pageIndex, [&](pdf_page *page) {
                paintPage(ctx, page, rotation, image, {*m_colourSpaces, images, m_context, cookie});
            });
        },
        outcome);
    return painted ? image : QImage();
}

bool DocumentSession::renderBands(int pageIndex, int rotation, PageBands &bands,
                                  const PdfPageBandSink &sink, EngineError *outcome,
                                  const std::atomic<bool> *cancelled)
{
    if (!hasPage(pageIndex, outcome)) {
        return false;
    }
    if (!bands.isValid()) {
        *outcome = noMemoryFor(bands.bandSize());
        return false;
    }
    WorkBudget budget = pageBudget(m_budgets, bands.pageSize(), bands.bandSize());
    budget.cancelled = cancelled;
    RecordedPage recorded(m_context, *m_colourSpaces, m_budgets.keptImages);
    // What the sink does with a band does not count.
    const auto workTimed = [&](auto &&body) {
        const auto start = std::chrono::steady_clock::now();
        const bool done = work(pageIndex, budget, recorded.cookie(), body, outcome);
        budget.time -= std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - start);
        return done;
    };
    const bool isRecorded = workTimed([&](fz_context *ctx) {
        withPage(ctx, pageIndex,
                 [&](pdf_page *page) { recorded.record(ctx, page, rotation, bands.pageSize()); });
    });
    if (!isRecorded) {
        return false;
    }
    while (bands.next()) {
        QImage rows = bands.newRows();
        const int top = bands.firstNewRow();
        if (!workTimed([&](fz_context *ctx) { recorded.paint(ctx, top, rows); })) {
            return false;
        }
        if (!sink(bands.image(), bands.top())) {
            return false;
        }
    }
    return true;
}

bool DocumentSession::dropBrokenImages(int pageIndex)
{
    const int number = m_pages->pageNumbers[static_cast<std::size_t>(pageIndex)];
    bool areDropped = false;
    m_context.run(
        [&](fz_context *ctx) {
            pdf_obj *object = pdf_load_object(ctx, m_document, number);
            areDropped = pdfcore::dropBrokenImages(ctx, m_document, object);
            pdf_drop_obj(ctx, object);
        },
        nullptr);
    return areDropped;
}

bool DocumentSession::readsOtherwise(QPDF &other)
{
    return compareObjects(m_context, m_document, other) != FoundObjects::Same;
}

bool DocumentSession::writeRepaired(QIODevice &device)
{
    constexpr int kBufferBytes = 1 << 16;
    // Writing changes the document.
    m_usable = false;
    m_context.beginWork(m_budgets.open);
    const bool written = m_context.run(
        [&](fz_context *ctx) {
            dropBrokenObjects(ctx, m_document);
            pdf_write_options options = pdf_default_write_options;
            options.do_encrypt = PDF_ENCRYPT_NONE;
            fz_output *output =
                fz_new_output(ctx, kBufferBytes, &device, &writeToDevice, nullptr, nullptr);
            output->tell = &positionOfDevice;
            fz_try(ctx)
            {
                pdf_write_document(ctx, m_document, output, &options);
                fz_close_output(ctx, output);
            }
            fz_always(ctx)
            {
                fz_drop_output(ctx, output);
            }
            fz_catch(ctx)
            {
                fz_rethrow(ctx);
            }
        },
        nullptr);
    return m_context.endWork() == BudgetBreach::None && written;
}

EngineError DocumentSession::budgetError(BudgetBreach breach, PdfBackendError code) const
{
    switch (breach) {
    case BudgetBreach::Cancelled:
        return cancelledError(code);
    case BudgetBreach::Memory:
        return {code, QStringLiteral("It needs too much memory and was given up.")};
    default:
        return {code, QStringLiteral("It takes too long and was given up.")};
    }
}

} // namespace pdfcore
