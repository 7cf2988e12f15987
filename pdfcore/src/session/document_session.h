// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/damage.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/base/file_identity.h"
#include "pdfcore/src/mupdf/mupdf_context.h"
#include "pdfcore/src/mupdf/page_tree.h"
#include "pdfcore/src/render/colour_spaces.h"

#include <QIODevice>
#include <QImage>
#include <QList>
#include <QSize>
#include <QSizeF>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include <mupdf/pdf.h>

class QPDF;

namespace pdfcore {

class PageBands;

/// What the work on one document may cost.
struct SessionBudgets
{
    /// Opening a file and reading its page sizes.
    WorkBudget open{std::chrono::seconds{20}, std::size_t{1} << 30};
    /// Rendering one page. An image gets a multiple of its own size in memory on top, and a page of
    /// more pixels than one of A4 at 300 dpi as many times as much time.
    WorkBudget page{std::chrono::seconds{20}, std::size_t{512} << 20};
    /// Bytes of decoded images that a page which is rendered in bands keeps from one to the next.
    std::size_t keptImages = std::size_t{96} << 20;
};

/// One open PDF document with a MuPDF context of its own, for reading and rendering.
///
/// A session belongs to one thread at a time; see SessionPool for how sessions are shared.
class DocumentSession final
{
public:
    /// Opens the file. Null on failure, with the error in `outcome`.
    ///
    /// @param pages   Its pages, when another session of the same file has found them already.
    /// @param damage  What to do about a file in which MuPDF finds no pages. Damage::Repair means
    ///                that it is read from a copy that QPDF makes, if QPDF finds some.
    static std::unique_ptr<DocumentSession> open(const FileIdentity &file, const QString &password,
                                                 const SessionBudgets &budgets,
                                                 EngineError *outcome,
                                                 std::shared_ptr<const PageTree> pages = {},
                                                 Damage damage = Damage::Repair);
    ~DocumentSession();
    DocumentSession(const DocumentSession &) = delete;
    DocumentSession &operator=(const DocumentSession &) = delete;

    /// The file as it was when the session was opened.
    [[nodiscard]] const FileIdentity &file() const { return m_file; }
    /// The password that was given for it.
    [[nodiscard]] const QString &password() const { return m_password; }
    /// Memory that the session holds now, in bytes.
    [[nodiscard]] std::size_t bytesInUse() const { return m_context.bytesInUse(); }

    /// The pages; never null.
    [[nodiscard]] const std::shared_ptr<const PageTree> &pages() const { return m_pages; }
    [[nodiscard]] int pageCount() const { return static_cast<int>(m_pages->pageNumbers.size()); }

    /// Renders a page, turned clockwise by `rotation` degrees, stretched to `targetSize` pixels.
    ///
    /// Null on failure. A page that used up its budget leaves the session unfit for further use,
    /// and so does one that ended because `cancelled` was set.
    QImage render(int pageIndex, int rotation, QSize targetSize, EngineError *outcome,
                  const std::atomic<bool> *cancelled = nullptr);

    /// Renders a page, turned clockwise by `rotation` degrees, stretched to the size of `bands`,
    /// and hands one of these after the other to `sink`, until it returns false.
    ///
    /// False on failure, with the error in `outcome`, and when the sink wanted no more, without
    /// one. A page that used up its budget leaves the session unfit for further use, and so does
    /// one that ended because `cancelled` was set.
    bool renderBands(int pageIndex, int rotation, PageBands &bands, const PdfPageBandSink &sink,
                     EngineError *outcome, const std::atomic<bool> *cancelled = nullptr);

    /// What the session reads the document with, for work that does more than to show its pages.
    struct Reader
    {
        MupdfContext &context;
        pdf_document *document;
        ColourSpaces &colourSpaces;
    };
    [[nodiscard]] Reader reader() { return {m_context, m_document, *m_colourSpaces}; }
    /// After a piece of such work used up its budget or was cancelled.
    void doubt() { m_usable = false; }

    /// What rendering a page of `targetSize` pixels may cost when `imageSize` of them are in
    /// memory.
    [[nodiscard]] static WorkBudget pageBudget(const SessionBudgets &budgets, QSize targetSize,
                                               QSize imageSize);

    /// Writes the document as it was opened, which may have taken a repair, unencrypted. False when
    /// that fails.
    bool writeRepaired(QIODevice &device);

    /// Whether MuPDF found other objects in the file than `other` did.
    bool readsOtherwise(QPDF &other);

    /// What the document is encrypted by, as a document that has nothing else, opened with the
    /// password. Null without an error in `outcome` when it is not encrypted, else null on failure.
    std::shared_ptr<QPDF> openProtection(EngineError *outcome);

    /// False once a piece of work ended in a way that leaves the document in doubt.
    [[nodiscard]] bool isUsable() const { return m_usable; }

private:
    DocumentSession(const FileIdentity &file, const QString &password,
                    const SessionBudgets &budgets, std::shared_ptr<QTemporaryFile> copy);
    static std::unique_ptr<DocumentSession>
    openAsItIs(const FileIdentity &file, const QString &password, const SessionBudgets &budgets,
               std::shared_ptr<const PageTree> pages, std::shared_ptr<QTemporaryFile> copy,
               BudgetBreach *breach, EngineError *outcome);
    static std::unique_ptr<DocumentSession> openCopy(const FileIdentity &file,
                                                     const QString &password,
                                                     const SessionBudgets &budgets,
                                                     EngineError *outcome);
    EngineError openDocument();
    bool isComplete();
    bool isEncrypted();
    [[nodiscard]] QString contentPath() const;
    EngineError unlock();
    bool authenticate();
    std::shared_ptr<QPDF> openProtection(const QString &password, EngineError *outcome);
    bool unlockByQpdf();
    EngineError readPageTree();
    std::optional<PageTree> collectPages(bool *hasTree, QString *reason);
    std::vector<PageTreeKid> readManyKids();
    bool dropBrokenImages(int pageIndex);
    EngineError usePages();
    bool hasPage(int pageIndex, EngineError *outcome) const;
    template <typename Body>
    bool work(int pageIndex, const WorkBudget &budget, const fz_cookie &cookie, Body &&body,
              EngineError *outcome);
    template <typename Body>
    void withPage(fz_context *ctx, int pageIndex, Body &&body);
    EngineError budgetError(BudgetBreach breach, PdfBackendError code) const;

    FileIdentity m_file;
    QString m_password;
    SessionBudgets m_budgets;
    std::shared_ptr<QTemporaryFile> m_copy; ///< What is read instead of the file, or null.
    MupdfContext m_context;
    std::unique_ptr<ColourSpaces> m_colourSpaces;
    pdf_document *m_document = nullptr;
    std::shared_ptr<const PageTree> m_pages;
    bool m_usable = true;
};

} // namespace pdfcore
