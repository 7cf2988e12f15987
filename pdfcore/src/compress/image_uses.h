// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/compress/content_draws.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// What pages do with an image.
struct ImageUse
{
    /// Samples of the image to an inch of the page where it is largest, in the direction in which
    /// there are fewer of them.
    double dotsPerInch = 0;
    bool isDrawn = false;    ///< As an image of its own.
    bool isSoftMask = false; ///< As the soft mask of another image.
    bool isInGlyph = false;  ///< In a glyph of a Type 3 font; its size is not known then.
};

/// Finds out how large images stand on the pages of a document: in their contents and in those of
/// forms, patterns, groups of soft masks and appearances of annotations, however deep.
class ImageUses
{
public:
    ImageUses(const std::vector<QPDFObjectHandle> &pages, const PdfCancelFlag &cancel);

    /// Null when no page uses the image, or when not everything could be looked at.
    [[nodiscard]] const ImageUse *of(QPDFObjGen image) const;
    /// Soft masks of images that have been blended with a colour (ISO 32000-2, 11.6.5.2), and these
    /// images: the ones go with the others sample by sample.
    [[nodiscard]] const std::set<QPDFObjGen> &preblended() const { return m_preblended; }

private:
    /// A content stream with what its names stand for, on its way to the page.
    struct Task
    {
        QPDFObjectHandle stream; ///< Or a page.
        QPDFObjectHandle resources;
        Transform base; ///< From its coordinates to inches of the page.
        int depth = 0;
    };

    void visitPage(QPDFObjectHandle page);
    void addAppearances(QPDFObjectHandle page, const Transform &base);
    void addAppearance(QPDFObjectHandle appearance, QPDFObjectHandle rect, const Transform &base);
    void addForm(QPDFObjectHandle form, QPDFObjectHandle resources, const Transform &base,
                 int depth);
    void addPatterns(QPDFObjectHandle resources, const Transform &base, int depth);
    void addGlyphs(QPDFObjectHandle resources);
    void run();
    void draw(const Draw &draw, const Task &task);
    void addImage(QPDFObjectHandle image, const Transform &place);
    const std::vector<Draw> *drawsOf(Task &task);

    PdfCancelFlag m_cancel;
    ContentDraws m_contents;
    std::map<QPDFObjGen, ImageUse> m_uses;
    std::set<QPDFObjGen> m_preblended;
    std::set<QPDFObjGen> m_fontsSeen;
    std::map<QPDFObjGen, std::vector<Draw>> m_known; ///< What forms draw.
    std::vector<Draw> m_page;                        ///< What the page at hand draws.
    std::set<std::string> m_visited;                 ///< Forms with the scale that they have.
    std::vector<Task> m_tasks;
    bool m_isComplete = true;
};

} // namespace pdfcore
