// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/side_panel/pdf_operation_side_panel.h"

#include <QList>
#include <QString>
#include <QStringList>

class FileLocationSelector;
class QCheckBox;
class QListWidget;
class QPushButton;
class QWidget;

/// A panel for extracting and splitting, with a model of A4 pages. The panel is hidden at first.
class ShownSidePanel final
{
public:
    /// The numbers of the workspace modes.
    static constexpr int kExtract = 2;
    static constexpr int kSplit = 3;

    static const QString kFolder;
    static const QString kPath; ///< "report.pdf" in kFolder.
    /// What the previews show instead of files.
    static const QStringList kExtractHint;
    static const QStringList kSplitHint;

    explicit ShownSidePanel(int pageCount, const QString &path = kPath);
    ~ShownSidePanel();

    void setPages(int count);
    /// Selects exactly the pages at the rows.
    void select(const QList<int> &rows);

    /// The page of options that is shown.
    [[nodiscard]] QWidget &page() const;
    [[nodiscard]] QCheckBox &combine() const;
    [[nodiscard]] QCheckBox &everyPage() const;
    [[nodiscard]] QListWidget &extractList() const;
    [[nodiscard]] QListWidget &splitList() const;
    [[nodiscard]] FileLocationSelector &extractLocation() const;
    [[nodiscard]] FileLocationSelector &splitLocation() const;
    [[nodiscard]] QPushButton &extractButton() const;
    [[nodiscard]] QPushButton &splitButton() const;
    [[nodiscard]] QStringList extractTexts() const;
    [[nodiscard]] QStringList splitTexts() const;

    PdfDocumentModel model;
    PdfOperationSidePanel panel;

private:
    template <typename T>
    [[nodiscard]] T &part(const char *name) const
    {
        return *panel.findChild<T *>(QLatin1String(name));
    }
    [[nodiscard]] QPushButton &button(const QString &text) const;
};
