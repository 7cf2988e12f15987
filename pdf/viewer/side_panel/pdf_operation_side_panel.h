// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/side_panel/page_output_plan.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

class FileLocationSelector;
class OutputPreviewList;
class PdfDocumentModel;
class QCheckBox;
class QPushButton;
class QStackedWidget;

/// The options for extracting pages and for splitting the document, with a preview of the files
/// that will be written.
///
/// The panel writes nothing; its buttons ask for it. Rows are counted from zero. It starts hidden;
/// setWorkspaceMode() shows it. The model belongs to the caller.
class PdfOperationSidePanel final : public QWidget
{
    Q_OBJECT

public:
    explicit PdfOperationSidePanel(QWidget *parent = nullptr);
    ~PdfOperationSidePanel() override;

    [[nodiscard]] QSize sizeHint() const override;

    /// Previews the pages of `model`; null for none.
    void setModel(PdfDocumentModel *model);
    /// Takes a value of PdfWorkspaceMode: shows the options for extracting or those for splitting,
    /// and hides the panel in any other mode.
    void setWorkspaceMode(int mode);
    /// Sets the rows before which a new file begins, in any order.
    void setSplitPoints(const QList<int> &beforeRows);

signals:
    /// The selected pages are to be written to the folder, which may be empty.
    void extractRequested(bool combineIntoOne, const QString &outputDirectory);
    /// The parts of the document are to be written to the folder, which may be empty.
    void splitRequested(bool everyPage, QList<int> beforeRows, const QString &outputDirectory);
    void everyPageSplitToggled(bool enabled);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void buildInterface();
    QWidget *createPage(const QString &title, const QString &optionsTitle, QCheckBox *option,
                        const QString &previewTitle, OutputPreviewList *preview,
                        FileLocationSelector *location, QPushButton *action);
    void connectParts();

    void onModelReset();
    void onLocationChanged(const FileLocationSelector &location);
    /// Takes over the document's file if it has become another one.
    void followDocumentPath();

    /// Refreshes what a change of the model made out of date: at once, or, as a preview of many
    /// pages takes its time, once after all changes of the moment.
    void refreshExtractPreviewSoon();
    void refreshSplitPreviewSoon();
    void refreshSoon();
    void refreshStalePreviews();
    void refreshExtractPreview();
    void refreshSplitPreview();

    [[nodiscard]] int pageCount() const;
    [[nodiscard]] QString baseName() const;
    [[nodiscard]] QString documentFolder() const;
    [[nodiscard]] QString outputDirectory() const;

    QPointer<PdfDocumentModel> m_model;
    QStackedWidget *m_pages;
    QCheckBox *m_combineCheckBox;
    QCheckBox *m_everyPageCheckBox;
    OutputPreviewList *m_extractPreview;
    OutputPreviewList *m_splitPreview;
    FileLocationSelector *m_extractLocation;
    FileLocationSelector *m_splitLocation;
    QPushButton *m_extractButton;
    QPushButton *m_splitButton;
    QList<int> m_splitPoints;
    /// Empty until the user chose a folder for this document.
    QString m_outputDirectory;
    QString m_documentPath;
    bool m_extractStale = false;
    bool m_splitStale = false;
    bool m_refreshPosted = false;
};
