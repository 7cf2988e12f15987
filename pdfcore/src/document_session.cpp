#include "pdfcore/src/document_session.h"

#include "pdfcore/src/mupdf_file_stream.h"
#include "pdfcore/src/page_painter.h"
#include "pdfcore/src/password_candidates.h"
#include "pdfcore/src/qpdf_source.h"

#include <QFile>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <string>
#include <unordered_set>

namespace pdfcore {

namespace {

/// US Letter, what a page without a usable size is taken to be.
constexpr QSizeF kFallbackPageSize{612, 792};

/// Levels of page tree nodes that are followed.
constexpr std::size_t kMaxTreeDepth = 512;

/// Copies of the target that nested transparency groups may need on top of the budget.
constexpr std::size_t kTargetCopies = 4;

/// Levels up to which MuPDF can look up what a page inherits.
constexpr std::size_t kMaxInheritanceDepth = 64;

struct TreeLevel
{
    pdf_obj *node; ///< Kept.
    int next;
};

/// What the walk over the page tree needs; C++ containers that are filled between MuPDF calls.
struct TreeWalk
{
    std::vector<TreeLevel> levels;
    std::unordered_set<int> visitedNodes;
    std::vector<int> *pageNumbers;
};

void pushLevel(fz_context *ctx, TreeWalk &walk, pdf_obj *node)
{
    const int number = pdf_to_num(ctx, node);
    if (walk.levels.size() >= kMaxTreeDepth)
        return;
    if (number != 0 && !walk.visitedNodes.insert(number).second)
        return;
    walk.levels.push_back({pdf_keep_obj(ctx, node), 0});
}

/// The number of a page object; one that stands directly in its parent becomes an object first.
int pageNumber(fz_context *ctx, pdf_document *document, pdf_obj *page)
{
    const int number = pdf_to_num(ctx, page);
    if (number != 0)
        return number;
    pdf_obj *reference = pdf_add_object(ctx, document, page);
    const int added = pdf_to_num(ctx, reference);
    pdf_drop_obj(ctx, reference);
    return added;
}

/// Makes sure that the page inherits from the nodes above it, also where its own way up is wrong or
/// too long for MuPDF: then what it would inherit is written into it. Only in memory.
void settleInheritance(fz_context *ctx, pdf_obj *page, const TreeWalk &walk)
{
    pdf_obj *parent = pdf_dict_get(ctx, page, PDF_NAME(Parent));
    if (walk.levels.size() <= kMaxInheritanceDepth &&
        pdf_resolve_indirect(ctx, parent) == pdf_resolve_indirect(ctx, walk.levels.back().node))
        return;
    for (pdf_obj *key :
         {PDF_NAME(Resources), PDF_NAME(MediaBox), PDF_NAME(CropBox), PDF_NAME(Rotate)}) {
        for (auto level = walk.levels.rbegin();
             level != walk.levels.rend() && pdf_dict_get(ctx, page, key) == nullptr; ++level) {
            pdf_obj *value = pdf_dict_get(ctx, level->node, key);
            if (value != nullptr)
                pdf_dict_put(ctx, page, key, value);
        }
    }
    pdf_dict_del(ctx, page, PDF_NAME(Parent));
}

/// Collects the pages below `root` in order. A node is what has kids; every node counts once.
void walkPageTree(fz_context *ctx, pdf_document *document, pdf_obj *root, TreeWalk &walk)
{
    if (pdf_is_array(ctx, pdf_dict_get(ctx, root, PDF_NAME(Kids))) == 0) {
        if (pdf_name_eq(ctx, pdf_dict_get(ctx, root, PDF_NAME(Type)), PDF_NAME(Page)))
            walk.pageNumbers->push_back(pageNumber(ctx, document, root));
        return;
    }
    pushLevel(ctx, walk, root);
    while (!walk.levels.empty()) {
        TreeLevel &level = walk.levels.back();
        pdf_obj *kids = pdf_dict_get(ctx, level.node, PDF_NAME(Kids));
        if (level.next >= pdf_array_len(ctx, kids)) {
            pdf_drop_obj(ctx, level.node);
            walk.levels.pop_back();
            continue;
        }
        pdf_obj *kid = pdf_array_get(ctx, kids, level.next);
        ++level.next;
        fz_try(ctx)
        {
            if (pdf_is_dict(ctx, kid)) {
                if (pdf_is_array(ctx, pdf_dict_get(ctx, kid, PDF_NAME(Kids)))) {
                    pushLevel(ctx, walk, kid);
                } else if (!pdf_name_eq(ctx, pdf_dict_get(ctx, kid, PDF_NAME(Type)),
                                        PDF_NAME(Pages))) {
                    settleInheritance(ctx, kid, walk);
                    walk.pageNumbers->push_back(pageNumber(ctx, document, kid));
                }
            }
        }
        fz_catch(ctx)
        {
            // A kid that cannot be read is no page; the others still are.
            if (fz_caught(ctx) == FZ_ERROR_MEMORY)
                fz_rethrow(ctx);
        }
    }
}

/// Loads the page at `index`, whose object is `object`.
///
/// Some releases of MuPDF take a reference too many to an object that they found through the page
/// map, which would keep it for good.
pdf_page *loadPage(fz_context *ctx, pdf_document *document, int index, pdf_obj *object)
{
    const int before = pdf_obj_refs(ctx, object);
    pdf_page *page = nullptr;
    fz_var(page);
    fz_try(ctx)
    {
        page = pdf_load_page(ctx, document, index);
    }
    fz_always(ctx)
    {
        // A repair on the way puts a new object in the old one's place; the document and the page
        // are then the only ones to hold it.
        const bool isSame = page == nullptr || page->obj == object;
        pdf_obj *found = isSame ? object : page->obj;
        const int expected = isSame ? before + (page != nullptr ? 1 : 0) : 2;
        if (pdf_obj_refs(ctx, found) > expected)
            pdf_drop_obj(ctx, found);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
    return page;
}

/// Gives MuPDF the pages found by the walk, so that it looks pages up by index at once instead of
/// walking the tree again, and counts the same pages in the same order.
void installPageMap(fz_context *ctx, pdf_document *document, const std::vector<int> &pageNumbers)
{
    if (pageNumbers.empty())
        return;
    int *map = fz_malloc_array(ctx, pageNumbers.size(), int);
    std::copy(pageNumbers.begin(), pageNumbers.end(), map);
    document->fwd_page_map = map;
    document->map_page_count = static_cast<int>(pageNumbers.size());
    document->page_map_nesting = 1;

    // Only in memory: MuPDF compares page indexes with the count that the tree claims.
    pdf_obj *root = pdf_dict_getp(ctx, pdf_trailer(ctx, document), "Root/Pages");
    if (pdf_dict_get_int(ctx, root, PDF_NAME(Count)) != document->map_page_count)
        pdf_dict_put_int(ctx, root, PDF_NAME(Count), document->map_page_count);
}

/// Takes out of a page what readers ignore but MuPDF obeys. Only in memory.
void tidyPage(fz_context *ctx, pdf_obj *page)
{
    pdf_obj *unit = pdf_dict_get(ctx, page, PDF_NAME(UserUnit));
    if (unit != nullptr && !(pdf_to_real(ctx, unit) > 0))
        pdf_dict_del(ctx, page, PDF_NAME(UserUnit));

    const fz_rect media = pdf_to_rect(ctx, pdf_dict_get_inheritable(ctx, page, PDF_NAME(MediaBox)));
    const fz_rect crop = pdf_to_rect(ctx, pdf_dict_get_inheritable(ctx, page, PDF_NAME(CropBox)));
    if (fz_is_empty_rect(media) != 0 || fz_is_empty_rect(crop) != 0)
        return;
    if (fz_is_empty_rect(fz_intersect_rect(media, crop)) != 0)
        pdf_dict_put_rect(ctx, page, PDF_NAME(CropBox), media);
}

QSizeF sizeOfPage(fz_context *ctx, pdf_obj *page)
{
    fz_rect mediaBox = fz_empty_rect;
    fz_matrix ctm = fz_identity;
    tidyPage(ctx, page);
    pdf_page_obj_transform(ctx, page, &mediaBox, &ctm);
    const fz_rect bounds = fz_transform_rect(mediaBox, ctm);
    const double width = static_cast<double>(bounds.x1) - static_cast<double>(bounds.x0);
    const double height = static_cast<double>(bounds.y1) - static_cast<double>(bounds.y0);
    if (!std::isfinite(width) || !std::isfinite(height) || width <= 0 || height <= 0)
        return kFallbackPageSize;
    return {width, height};
}

} // namespace

DocumentSession::DocumentSession(const FileIdentity &file, const QString &password,
                                 const SessionBudgets &budgets)
    : m_file(file)
    , m_password(password)
    , m_budgets(budgets)
{}

DocumentSession::~DocumentSession()
{
    if (m_context.get() == nullptr)
        return;
    if (m_document != nullptr && m_document->page_map_nesting > 0)
        m_context.run([&](fz_context *ctx) { pdf_drop_page_tree(ctx, m_document); }, nullptr);
    pdf_drop_document(m_context.get(), m_document);
    m_colourSpaces.reset();
}

std::unique_ptr<DocumentSession> DocumentSession::open(const FileIdentity &file,
                                                       const QString &password,
                                                       const SessionBudgets &budgets,
                                                       EngineError *outcome)
{
    std::unique_ptr<DocumentSession> session(new DocumentSession(file, password, budgets));
    if (session->m_context.get() == nullptr) {
        *outcome = {PdfBackendError::InvalidDocument, QStringLiteral("Not enough memory.")};
        return nullptr;
    }
    session->m_colourSpaces = std::make_unique<ColourSpaces>(session->m_context);
    session->m_context.beginWork(budgets.open);
    *outcome = session->openDocument();
    const BudgetBreach breach = session->m_context.endWork();
    if (outcome->isError() && breach != BudgetBreach::None)
        *outcome = session->budgetError(breach, PdfBackendError::InvalidDocument);
    if (outcome->isError())
        return nullptr;
    return session;
}

EngineError DocumentSession::openDocument()
{
    if (!m_file.exists()) {
        return {PdfBackendError::FileNotFound, QFile::exists(m_file.path)
                                                   ? QStringLiteral("This is not a file.")
                                                   : QStringLiteral("There is no such file.")};
    }
    QString reason;
    fz_stream *stream = openFileStream(m_context, m_file.path, &reason);
    if (stream == nullptr)
        return {PdfBackendError::FileNotFound, reason};

    pdf_document *document = nullptr;
    const bool opened = m_context.run(
        [&](fz_context *ctx) { document = pdf_open_document_with_stream(ctx, stream); }, &reason);
    fz_drop_stream(m_context.get(), stream);
    m_document = document;
    if (!opened) {
        if (reason.contains(QLatin1String("encryption handler")))
            reason = QStringLiteral("The file is encrypted for certificates or by another "
                                    "handler that is not supported (%1).")
                         .arg(reason);
        return {PdfBackendError::InvalidDocument, reason};
    }
    if (EngineError error = unlock(); error.isError())
        return error;
    return readPageTree();
}

EngineError DocumentSession::unlock()
{
    int needed = 0;
    QString reason;
    if (!m_context.run([&](fz_context *ctx) { needed = pdf_needs_password(ctx, m_document); },
                       &reason))
        return {PdfBackendError::InvalidDocument, reason};
    if (needed == 0)
        return {};
    if (m_password.isEmpty())
        return {PdfBackendError::PasswordRequired, QStringLiteral("The file is encrypted.")};
    for (const QByteArray &candidate : mupdfPasswordCandidates(m_password)) {
        const char *spelling = candidate.constData();
        int accepted = 0;
        const bool ran = m_context.run(
            [&](fz_context *ctx) {
                accepted = pdf_authenticate_password(ctx, m_document, spelling);
            },
            &reason);
        if (ran && accepted != 0)
            return {};
    }
    if (adoptKeyFromQpdf())
        return {};
    return {PdfBackendError::InvalidPassword, QStringLiteral("The password does not fit.")};
}

/// Up to revision 4 MuPDF turns every password into PDFDocEncoding, which has no letters for the
/// UTF-8 bytes of many scripts; QPDF takes the bytes as they are, and its file key fits MuPDF too.
bool DocumentSession::adoptKeyFromQpdf()
{
    constexpr int kLastRevisionWithDocEncoding = 4;
    fz_context *ctx = m_context.get();
    if (pdf_crypt_revision(ctx, m_document->crypt) > kLastRevisionWithDocEncoding)
        return false;
    EngineError outcome;
    const std::shared_ptr<QPDF> document = openQpdf(m_file.path, m_password, &outcome);
    if (!document || !document->isEncrypted())
        return false;
    const std::string key = document->getEncryptionKey();
    if (key.size() * 8 != static_cast<std::size_t>(pdf_crypt_length(ctx, m_document->crypt)))
        return false;
    std::memcpy(pdf_crypt_key(ctx, m_document->crypt), key.data(), key.size());
    return true;
}

EngineError DocumentSession::readPageTree()
{
    bool hasTree = false;
    QString reason;
    if (!collectPages(&hasTree, &reason))
        return {PdfBackendError::InvalidDocument, reason};
    if (m_pageNumbers.empty() && m_document->repair_attempted == 0) {
        // The cross-reference table was readable but led nowhere: look for the objects themselves.
        m_context.run(
            [&](fz_context *ctx) {
                pdf_repair_xref(ctx, m_document);
                pdf_repair_obj_stms(ctx, m_document);
            },
            nullptr);
        if (!collectPages(&hasTree, &reason))
            return {PdfBackendError::InvalidDocument, reason};
    }
    if (!hasTree)
        return {PdfBackendError::InvalidDocument, QStringLiteral("The file has no page tree.")};
    if (!m_context.run([&](fz_context *ctx) { installPageMap(ctx, m_document, m_pageNumbers); },
                       &reason))
        return {PdfBackendError::InvalidDocument, reason};
    return {};
}

bool DocumentSession::collectPages(bool *hasTree, QString *reason)
{
    m_pageNumbers.clear();
    TreeWalk walk;
    walk.pageNumbers = &m_pageNumbers;
    const bool walked = m_context.run(
        [&](fz_context *ctx) {
            pdf_obj *root = pdf_dict_getp(ctx, pdf_trailer(ctx, m_document), "Root/Pages");
            *hasTree = pdf_is_dict(ctx, root) != 0;
            if (*hasTree)
                walkPageTree(ctx, m_document, root, walk);
        },
        reason);
    for (const TreeLevel &level : walk.levels)
        pdf_drop_obj(m_context.get(), level.node);
    return walked;
}

std::optional<QList<QSizeF>> DocumentSession::pageSizes(EngineError *outcome)
{
    QList<QSizeF> sizes(static_cast<qsizetype>(m_pageNumbers.size()), kFallbackPageSize);
    m_context.beginWork(m_budgets.open);
    for (std::size_t i = 0; i < m_pageNumbers.size(); ++i) {
        QSizeF &size = sizes[static_cast<qsizetype>(i)];
        m_context.run(
            [&](fz_context *ctx) {
                pdf_obj *page = pdf_load_object(ctx, m_document, m_pageNumbers[i]);
                fz_try(ctx) size = sizeOfPage(ctx, page);
                fz_always(ctx) pdf_drop_obj(ctx, page);
                fz_catch(ctx) fz_rethrow(ctx);
            },
            nullptr);
    }
    const BudgetBreach breach = m_context.endWork();
    if (breach != BudgetBreach::None) {
        m_usable = false;
        *outcome = budgetError(breach, PdfBackendError::InvalidDocument);
        return std::nullopt;
    }
    return sizes;
}

QImage DocumentSession::render(int pageIndex, int rotation, QSize targetSize, EngineError *outcome)
{
    if (pageIndex < 0 || pageIndex >= pageCount()) {
        *outcome = {PdfBackendError::RenderFailed,
                    QStringLiteral("The file has no page %1.").arg(qint64{pageIndex} + 1)};
        return {};
    }
    QImage image(targetSize, QImage::Format_RGB32);
    if (image.isNull()) {
        *outcome = {PdfBackendError::RenderFailed,
                    QStringLiteral("Not enough memory for an image of %1 × %2 pixels.")
                        .arg(targetSize.width())
                        .arg(targetSize.height())};
        return {};
    }

    fz_cookie cookie{};
    const int number = m_pageNumbers[static_cast<std::size_t>(pageIndex)];
    QString reason;
    WorkBudget budget = m_budgets.page;
    budget.bytes += kTargetCopies * static_cast<std::size_t>(image.sizeInBytes());
    m_context.beginWork(budget);
    const bool painted = m_context.run(
        [&](fz_context *ctx) {
            pdf_obj *object = pdf_load_object(ctx, m_document, number);
            pdf_page *page = nullptr;
            fz_var(page);
            fz_try(ctx)
            {
                tidyPage(ctx, object);
                m_colourSpaces->prepare(m_document, object);
                page = loadPage(ctx, m_document, pageIndex, object);
                paintPage(ctx, page, rotation, image, *m_colourSpaces, m_context, cookie);
            }
            fz_always(ctx)
            {
                if (page != nullptr)
                    fz_drop_page(ctx, &page->super);
                pdf_drop_obj(ctx, object);
            }
            fz_catch(ctx)
            {
                fz_rethrow(ctx);
            }
        },
        &reason);
    BudgetBreach breach = m_context.endWork();
    if (breach == BudgetBreach::None && cookie.abort != 0)
        breach = BudgetBreach::Time;
    if (breach != BudgetBreach::None) {
        m_usable = false;
        *outcome = budgetError(breach, PdfBackendError::RenderFailed);
        return {};
    }
    if (!painted) {
        *outcome = {PdfBackendError::RenderFailed, reason};
        return {};
    }
    *outcome = {};
    return image;
}

EngineError DocumentSession::budgetError(BudgetBreach breach, PdfBackendError code) const
{
    return {code, breach == BudgetBreach::Time
                      ? QStringLiteral("It takes too long and was given up.")
                      : QStringLiteral("It needs too much memory and was given up.")};
}

} // namespace pdfcore
