// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/thumbnails/pdf_insert_drop_zone.h"

#include "widgets/file_drop.h"
#include "widgets/theme.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTextLayout>
#include <QUrl>
#include <QVariant>

#include <algorithm>

namespace {

constexpr int kIconSide = 28;
constexpr int kMinimumHeight = 152;
constexpr int kLineHeight = 24;
constexpr int kIconGap = 8;
constexpr int kFontPixelSize = 13;
constexpr QMargins kPadding{6, 14, 6, 14};

// %1 text, %2 background, %3 border of what is aimed at
constexpr QLatin1String kStyleSheet{R"(
#pdfInsertDropZone {
    color: %1; background: %2; border: 2px dashed #4F7DFF; border-radius: 10px;
    font-size: 13px; padding: 12px 4px;
}
#pdfInsertDropZone:hover, #pdfInsertDropZone[dragActive="true"] {
    background: #E2E9FF; border-color: %3;
}
#pdfInsertDropZone:pressed { background: #D5DFFF; border-color: %3; }
)"};

constexpr char kDragActive[] = "dragActive";

bool isLocalPdf(const QUrl &url)
{
    return url.isLocalFile() && QFileInfo(url.toLocalFile())
                                        .suffix()
                                        .compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0;
}

bool holdsOnlyPdfFiles(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return !urls.isEmpty() && std::all_of(urls.cbegin(), urls.cend(), isLocalPdf);
}

/// The lines of a text broken at `width`.
QStringList brokenLines(const QString &text, const QFont &font, int width)
{
    QStringList lines;
    for (const QString &paragraph : text.split(u'\n')) {
        QTextLayout layout(paragraph, font);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            lines.append(paragraph.mid(line.textStart(), line.textLength()).trimmed());
        }
        layout.endLayout();
    }
    return lines;
}

/// Accepts PDF files to be copied, and ignores everything else; true if it was accepted.
bool acceptPdfFiles(QDropEvent &event)
{
    if (!holdsOnlyPdfFiles(*event.mimeData())) {
        event.ignore();
        return false;
    }
    return acceptAsCopy(event);
}

} // namespace

PdfInsertDropZone::PdfInsertDropZone(QWidget *parent)
    : QPushButton(parent)
{
    setObjectName(QStringLiteral("pdfInsertDropZone"));
    setText(tr("插入 PDF\n或将多个 PDF 拖放至此处"));
    setIcon(QIcon(QStringLiteral(":/res/icons/modern/add-file.png")));
    setIconSize(QSize(kIconSide, kIconSide));
    setMinimumHeight(kMinimumHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setAcceptDrops(true);
    setAttribute(Qt::WA_Hover);
    setProperty(kDragActive, false);
    setStyleSheet(QString(kStyleSheet)
                      .arg(Theme::accent.name(), Theme::accentTint.name(), Theme::chosen.name()));
}

PdfInsertDropZone::~PdfInsertDropZone() = default;

void PdfInsertDropZone::dragEnterEvent(QDragEnterEvent *event)
{
    if (!acceptPdfFiles(*event)) {
        return;
    }
    setDragActive(true);
}

void PdfInsertDropZone::dragMoveEvent(QDragMoveEvent *event)
{
    // What is proposed changes with the keys that are held.
    acceptPdfFiles(*event);
}

void PdfInsertDropZone::dragLeaveEvent(QDragLeaveEvent * /*event*/)
{
    setDragActive(false);
}

void PdfInsertDropZone::dropEvent(QDropEvent *event)
{
    setDragActive(false);
    if (!acceptPdfFiles(*event)) {
        return;
    }
    QStringList files;
    for (const QUrl &url : event->mimeData()->urls()) {
        files.append(url.toLocalFile());
    }
    emit filesDropped(files);
}

void PdfInsertDropZone::paintEvent(QPaintEvent * /*event*/)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    // The whole zone lights up, wherever in it the pointer is.
    option.state.setFlag(QStyle::State_MouseOver, isEnabled() && underMouse());
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    if (!isEnabled()) {
        painter.setOpacity(Theme::disabledCardOpacity);
    }

    // A button draws its icon beside its text; here it stands above.
    QFont textFont = font();
    textFont.setPixelSize(kFontPixelSize);
    const QRect content = rect().marginsRemoved(kPadding);
    const QStringList lines = brokenLines(text(), textFont, content.width());
    const int textHeight = static_cast<int>(lines.size()) * kLineHeight;
    const int blockHeight = iconSize().height() + kIconGap + textHeight;
    int top = std::max(content.top(), content.center().y() - blockHeight / 2);

    const QRect iconRect(content.center().x() - iconSize().width() / 2, top, iconSize().width(),
                         iconSize().height());
    icon().paint(&painter, iconRect);
    top += iconSize().height() + kIconGap;

    painter.setFont(textFont);
    painter.setPen(Theme::accent);
    for (const QString &line : lines) {
        painter.drawText(QRect(content.left(), top, content.width(), kLineHeight), Qt::AlignCenter,
                         line);
        top += kLineHeight;
    }
}

void PdfInsertDropZone::setDragActive(bool active)
{
    setProperty(kDragActive, active);
    style()->unpolish(this);
    style()->polish(this);
    update();
}
