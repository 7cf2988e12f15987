// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/side_panel/pdf_operation_side_panel.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/common/pdf_view_modes.h"
#include "pdf/viewer/side_panel/output_preview_list.h"
#include "tools/file_location_selector.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/wrapped_check_box.h"

#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStringList>
#include <QStyle>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int kMinimumWidth = 240;
constexpr int kMaximumWidth = 480;
constexpr int kInitialWidth = 340;
constexpr int kMargin = 16;
/// The check box keeps so much room around its indicator, which is to stand below the titles.
constexpr int kOptionInset = 4;
constexpr QMargins kMargins{kMargin - kOptionInset, kMargin, kMargin - kOptionInset, kMargin};
constexpr QMargins kBlockMargins{kOptionInset, 0, kOptionInset, 0};
constexpr int kTitleGap = 16;
constexpr int kSectionGap = 16;
constexpr int kLineGap = 8;
constexpr int kButtonHeight = 40;

constexpr int kExtractPage = 0;
constexpr int kSplitPage = 1;

/// A document of so many pages is previewed at once after every single change.
constexpr int kMaximumPagesAtOnce = 256;

// %1 white, %2 ink, %3 section title, %4 to %6 accent, hovered, pressed, %7 and %8 disabled text
// and background
constexpr QLatin1String kStyleSheet{R"(
#pdfOperationSidePanel { background: %1; border: none; }
QLabel#pdfOptionTitle {
    color: %2; background: transparent; font-size: 18px; font-weight: 700;
}
QLabel#pdfOptionSectionTitle {
    color: %3; background: transparent; font-size: 13px; font-weight: 700;
}
QPushButton#pdfPrimaryAction {
    color: %1; background: %4; border: 2px solid %4; border-radius: 8px; padding: 0 14px;
    font-size: 14px; font-weight: 600;
}
QPushButton#pdfPrimaryAction:hover { background: %5; border-color: %5; }
QPushButton#pdfPrimaryAction:pressed { background: %6; border-color: %6; }
QPushButton#pdfPrimaryAction:focus { border-color: %2; }
QPushButton#pdfPrimaryAction:disabled { color: %7; background: %8; border-color: %8; }
)"};

QLabel *createLabel(const QString &objectName, const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    // At the side where the boxes and lists begin, whichever way the text itself runs.
    label->setAlignment(leadingSide(label->layoutDirection()) | Qt::AlignVCenter);
    return label;
}

QLabel *createSectionTitle(const QString &text, QWidget *parent)
{
    return createLabel(QStringLiteral("pdfOptionSectionTitle"), text, parent);
}

/// The description of a file with the name that the file will have, whatever a translation says.
QString withFileName(const QString &fileName, const QString &description)
{
    return fileName + description.mid(description.lastIndexOf(u'\n'));
}

QString pageNumber(int row)
{
    return QString::number(row + 1);
}

QString pageNumbers(const QList<int> &rows)
{
    QStringList numbers;
    numbers.reserve(rows.size());
    for (const int row : rows) {
        numbers.append(pageNumber(row));
    }
    return numbers.join(QStringLiteral(", "));
}

} // namespace

PdfOperationSidePanel::PdfOperationSidePanel(QWidget *parent)
    : QWidget(parent)
    , m_pages(new QStackedWidget(this))
    , m_combineCheckBox(new WrappedCheckBox(tr("将选定页面提取为单个文件"), this))
    , m_everyPageCheckBox(new WrappedCheckBox(tr("将每个页面拆分为单个文件"), this))
    , m_extractPreview(new OutputPreviewList(this))
    , m_splitPreview(new OutputPreviewList(this))
    , m_extractLocation(new FileLocationSelector(this))
    , m_splitLocation(new FileLocationSelector(this))
    , m_extractButton(new QPushButton(tr("提取"), this))
    , m_splitButton(new QPushButton(tr("拆分"), this))
{
    buildInterface();
    connectParts();
    refreshExtractPreview();
    refreshSplitPreview();
    hide();
}

PdfOperationSidePanel::~PdfOperationSidePanel() = default;

QSize PdfOperationSidePanel::sizeHint() const
{
    return {kInitialWidth, QWidget::sizeHint().height()};
}

void PdfOperationSidePanel::setModel(PdfDocumentModel *model)
{
    if (m_model != nullptr) {
        disconnect(m_model, nullptr, this, nullptr);
    }
    m_model = model;
    if (model != nullptr) {
        connect(model, &PdfDocumentModel::selectionChanged, this,
                &PdfOperationSidePanel::refreshExtractPreviewSoon);
        connect(model, &QAbstractItemModel::modelReset, this, &PdfOperationSidePanel::onModelReset);
        connect(model, &QAbstractItemModel::rowsInserted, this,
                &PdfOperationSidePanel::refreshSplitPreviewSoon);
        connect(model, &QAbstractItemModel::rowsRemoved, this,
                &PdfOperationSidePanel::refreshSplitPreviewSoon);
        // Selected pages may have got other numbers.
        connect(model, &PdfDocumentModel::pageOrderChanged, this,
                &PdfOperationSidePanel::refreshExtractPreviewSoon);
        // A save under another name changes no more than the pages' marks.
        connect(model, &QAbstractItemModel::dataChanged, this,
                &PdfOperationSidePanel::followDocumentPath);
    }
    followDocumentPath();
    refreshSplitPreview();
    refreshExtractPreview();
}

void PdfOperationSidePanel::setWorkspaceMode(int mode)
{
    switch (static_cast<PdfWorkspaceMode>(mode)) {
    case PdfWorkspaceMode::ExtractMode:
        m_pages->setCurrentIndex(kExtractPage);
        refreshExtractPreview();
        show();
        break;
    case PdfWorkspaceMode::SplitMode:
        m_pages->setCurrentIndex(kSplitPage);
        refreshSplitPreview();
        show();
        break;
    case PdfWorkspaceMode::NormalMode:
    case PdfWorkspaceMode::InsertMode:
    default:
        hide();
        break;
    }
}

void PdfOperationSidePanel::setSplitPoints(const QList<int> &beforeRows)
{
    m_splitPoints = beforeRows;
    refreshSplitPreview();
}

void PdfOperationSidePanel::showEvent(QShowEvent *event)
{
    followDocumentPath();
    refreshStalePreviews();
    QWidget::showEvent(event);
}

void PdfOperationSidePanel::buildInterface()
{
    setObjectName(QStringLiteral("pdfOperationSidePanel"));
    setAttribute(Qt::WA_StyledBackground);
    setMinimumWidth(kMinimumWidth);
    setMaximumWidth(kMaximumWidth);
    resize(kInitialWidth, height());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);

    m_combineCheckBox->setObjectName(QStringLiteral("pdfCombineExtractCheckBox"));
    m_everyPageCheckBox->setObjectName(QStringLiteral("pdfSplitEveryPageCheckBox"));
    m_extractPreview->setObjectName(QStringLiteral("pdfExtractPreviewList"));
    m_splitPreview->setObjectName(QStringLiteral("pdfSplitPreviewList"));
    m_extractLocation->setObjectName(QStringLiteral("pdfExtractLocationSelector"));
    m_splitLocation->setObjectName(QStringLiteral("pdfSplitLocationSelector"));

    m_pages->addWidget(createPage(tr("提取"), tr("文件提取选项"), m_combineCheckBox,
                                  tr("将选定页面另存为"), m_extractPreview, m_extractLocation,
                                  m_extractButton));
    m_pages->addWidget(createPage(tr("拆分"), tr("文件拆分选项"), m_everyPageCheckBox,
                                  tr("输出预览"), m_splitPreview, m_splitLocation, m_splitButton));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pages);

    setStyleSheet(QString(kStyleSheet)
                      .arg(Theme::white.name(), Theme::ink.name(), Theme::textSecondary.name(),
                           Theme::accent.name(), Theme::accentHover.name(),
                           Theme::accentPressed.name(), Theme::textMuted.name(),
                           Theme::borderSubtle.name()));
}

QWidget *PdfOperationSidePanel::createPage(const QString &title, const QString &optionsTitle,
                                           QCheckBox *option, const QString &previewTitle,
                                           OutputPreviewList *preview,
                                           FileLocationSelector *location, QPushButton *action)
{
    action->setObjectName(QStringLiteral("pdfPrimaryAction"));
    action->setCursor(Qt::PointingHandCursor);
    action->setFixedHeight(kButtonHeight);
    preview->setAccessibleName(previewTitle);

    auto *page = new QWidget;
    auto *head = new QVBoxLayout;
    head->setContentsMargins(kBlockMargins);
    head->setSpacing(kTitleGap);
    head->addWidget(createLabel(QStringLiteral("pdfOptionTitle"), title, page));
    head->addWidget(createSectionTitle(optionsTitle, page));

    auto *body = new QVBoxLayout;
    body->setContentsMargins(kBlockMargins);
    body->setSpacing(kLineGap);
    body->addWidget(createSectionTitle(previewTitle, page));
    body->addWidget(preview, 1);
    body->addSpacing(kSectionGap - kLineGap);
    body->addWidget(createSectionTitle(tr("文件位置"), page));
    body->addWidget(location);
    body->addSpacing(kSectionGap - kLineGap);
    body->addWidget(action);

    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(kMargins);
    layout->setSpacing(0);
    layout->addLayout(head);
    layout->addSpacing(kLineGap - kOptionInset);
    layout->addWidget(option);
    layout->addSpacing(kSectionGap - kOptionInset);
    layout->addLayout(body, 1);
    return page;
}

void PdfOperationSidePanel::connectParts()
{
    connect(m_combineCheckBox, &QCheckBox::toggled, this,
            &PdfOperationSidePanel::refreshExtractPreview);
    connect(m_everyPageCheckBox, &QCheckBox::toggled, this, [this](bool checked) {
        emit everyPageSplitToggled(checked);
        refreshSplitPreview();
    });
    for (FileLocationSelector *location : {m_extractLocation, m_splitLocation}) {
        connect(location, &FileLocationSelector::directoryChanged, this,
                [this, location] { onLocationChanged(*location); });
    }
    connect(m_extractButton, &QPushButton::clicked, this,
            [this] { emit extractRequested(m_combineCheckBox->isChecked(), outputDirectory()); });
    connect(m_splitButton, &QPushButton::clicked, this, [this] {
        emit splitRequested(m_everyPageCheckBox->isChecked(), m_splitPoints, outputDirectory());
    });
}

void PdfOperationSidePanel::onModelReset()
{
    m_outputDirectory.clear();
    m_splitPoints.clear();
    followDocumentPath();
    for (FileLocationSelector *location : {m_extractLocation, m_splitLocation}) {
        location->setDirectory({});
    }
    refreshExtractPreviewSoon();
    refreshSplitPreviewSoon();
}

void PdfOperationSidePanel::onLocationChanged(const FileLocationSelector &location)
{
    m_outputDirectory = location.directory();
    // There is one folder for both operations.
    FileLocationSelector *other =
        &location == m_extractLocation ? m_splitLocation : m_extractLocation;
    other->setDirectory(m_outputDirectory);
}

void PdfOperationSidePanel::followDocumentPath()
{
    const QString path = m_model != nullptr ? m_model->documentPath() : QString();
    if (path == m_documentPath) {
        return;
    }
    m_documentPath = path;
    for (FileLocationSelector *location : {m_extractLocation, m_splitLocation}) {
        location->setSourceFolder(documentFolder());
        // A chosen folder stays the same one, even if it was that of the previous file.
        location->setDirectory(m_outputDirectory);
    }
    refreshExtractPreviewSoon();
    refreshSplitPreviewSoon();
}

void PdfOperationSidePanel::refreshExtractPreviewSoon()
{
    m_extractStale = true;
    refreshSoon();
}

void PdfOperationSidePanel::refreshSplitPreviewSoon()
{
    m_splitStale = true;
    refreshSoon();
}

void PdfOperationSidePanel::refreshSoon()
{
    if (pageCount() <= kMaximumPagesAtOnce) {
        refreshStalePreviews();
    } else if (isVisible() && !std::exchange(m_refreshPosted, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_refreshPosted = false;
                refreshStalePreviews();
            },
            Qt::QueuedConnection);
    }
}

void PdfOperationSidePanel::refreshStalePreviews()
{
    if (m_extractStale) {
        refreshExtractPreview();
    }
    if (m_splitStale) {
        refreshSplitPreview();
    }
}

void PdfOperationSidePanel::refreshExtractPreview()
{
    m_extractStale = false;
    const QList<int> rows = m_model != nullptr ? m_model->selectedRows() : QList<int>();
    m_combineCheckBox->setEnabled(rows.size() >= 2);
    if (rows.size() < 2) {
        const QSignalBlocker blocker(m_combineCheckBox);
        m_combineCheckBox->setChecked(false);
    }
    m_extractButton->setEnabled(!rows.isEmpty());
    if (rows.isEmpty()) {
        m_extractPreview->showHint(tr("请先选择要提取的页面"));
        return;
    }

    const QString base = baseName();
    const bool combined = m_combineCheckBox->isChecked();
    QStringList texts;
    for (const PageOutputFile &file : planExtract(base, rows, combined)) {
        const QString description =
            combined ? tr("%1-extracted.pdf\n页面 %2").arg(base, pageNumbers(file.rows))
                     : tr("%1-%2.pdf\n第 %2 页").arg(base, pageNumber(file.rows.constFirst()));
        texts.append(withFileName(file.fileName, description));
    }
    m_extractPreview->showFiles(texts);
}

void PdfOperationSidePanel::refreshSplitPreview()
{
    m_splitStale = false;
    const QString base = baseName();
    const QList<PageOutputFile> files =
        planSplit(base, pageCount(), m_everyPageCheckBox->isChecked(), m_splitPoints);
    m_splitButton->setEnabled(!files.isEmpty());
    if (files.isEmpty()) {
        m_splitPreview->showHint(tr("点击页面之间的虚线，可以自定义拆分文件。"));
        return;
    }

    QStringList texts;
    for (const PageOutputFile &file : files) {
        const QString description =
            tr("%1-%2.pdf\n页面 %3-%4")
                .arg(base, QString::number(texts.size() + 1), pageNumber(file.rows.constFirst()),
                     pageNumber(file.rows.constLast()));
        texts.append(withFileName(file.fileName, description));
    }
    m_splitPreview->showFiles(texts);
}

int PdfOperationSidePanel::pageCount() const
{
    return m_model != nullptr ? m_model->rowCount() : 0;
}

QString PdfOperationSidePanel::baseName() const
{
    return QFileInfo(m_documentPath).completeBaseName();
}

QString PdfOperationSidePanel::documentFolder() const
{
    return m_documentPath.isEmpty() ? QString() : QFileInfo(m_documentPath).absolutePath();
}

QString PdfOperationSidePanel::outputDirectory() const
{
    return m_outputDirectory.isEmpty() ? documentFolder() : m_outputDirectory;
}
