// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_picture_export.h"
#include "pdfcore/src/operations/picture_file.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace pdfcore {

/// The pictures of one operation, which get their names together once there are all of them. Until
/// then they are temporary files, which go with this object.
class PictureSet final
{
public:
    explicit PictureSet(PdfPictureTarget target);

    /// Whether pictures can be called as the target says, and its folder is there.
    [[nodiscard]] EngineError check() const;
    [[nodiscard]] const PdfPictureTarget &target() const { return m_target; }

    /// Adds a picture that is complete.
    void add(std::unique_ptr<PictureFile> picture) { m_pictures.push_back(std::move(picture)); }

    /// Gives all pictures their names and puts their paths into `paths`. On failure, and when it is
    /// cancelled, there is none.
    EngineError place(const PdfCancelFlag &cancel, QStringList *paths);

private:
    EngineError placeAll(const PdfCancelFlag &cancel, QStringList *paths);
    [[nodiscard]] QString pathOf(std::size_t index, int attempt) const;

    const PdfPictureTarget m_target;
    std::vector<std::unique_ptr<PictureFile>> m_pictures;
};

} // namespace pdfcore
