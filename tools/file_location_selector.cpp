// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/file_location_selector.h"

#include "widgets/icon_paths.h"
#include "widgets/plain_tool_tip.h"
#include "widgets/popup_hover.h"
#include "widgets/rounded_window.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"

#include <QDir>
#include <QFileDialog>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QPolygonF>
#include <QStandardPaths>
#include <QStyle>

#include <array>

namespace {

constexpr int kHeight = 62;
constexpr int kPreferredWidth = 280;
constexpr int kMinimumWidth = 144;
constexpr int kMenuGap = 4;
constexpr int kMenuRadius = 7;

constexpr int kRadius = 8;
constexpr int kPadding = 12;
constexpr int kIconSide = 24;
constexpr int kChevronSide = 16;
constexpr int kTextGap = 12;
constexpr int kChevronGap = 8;
constexpr int kLabelHeight = 21;
constexpr int kPathHeight = 20;
constexpr int kLabelPixelSize = 13;
constexpr int kPathPixelSize = 12;

constexpr QLatin1String kChevronIcon{":/res/icons/modern/chevron-down.png"};

// %1 background, %2 text, %3 border, %4 and %6 chosen entry and its text, %5 separator, %7 radius
constexpr QLatin1String kMenuStyleSheet{R"(
QMenu#fileLocationMenu {
    color: %2; background: %1; border: 1px solid %3; border-radius: %7px; padding: 6px;
    font-size: 13px;
}
QMenu#fileLocationMenu::item {
    color: %2; background: transparent; min-height: 32px; padding: 4px 12px 4px 34px;
    border-radius: 5px;
}
QMenu#fileLocationMenu::item:selected { color: %6; background: %4; }
QMenu#fileLocationMenu::indicator { width: 14px; height: 14px; left: 10px; }
QMenu#fileLocationMenu::icon { left: 32px; }
QMenu#fileLocationMenu::separator { height: 1px; background: %5; margin: 5px 8px; }
)"};

constexpr int kCheckLeft = 10;
constexpr int kCheckSide = 14;

/// A menu that shows a check mark also beside an icon, where the style would leave it out.
class LocationMenu final : public QMenu
{
public:
    explicit LocationMenu(QWidget *parent)
        : QMenu(parent)
    {
        setObjectName(QStringLiteral("fileLocationMenu"));
        letCornersBeSeenThrough(*this, {.radius = kMenuRadius, .edge = Theme::border});
        setStyleSheet(QString(kMenuStyleSheet)
                          .arg(Theme::white.name(), Theme::ink.name(), Theme::border.name(),
                               Theme::accentTint.name(), Theme::borderSubtle.name(),
                               Theme::chosen.name(), QString::number(kMenuRadius)));
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QMenu::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Theme::accent, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QList<QAction *> all = actions();
        for (QAction *action : all) {
            if (action->isChecked()) {
                drawCheckMark(painter, checkRect(actionGeometry(action)));
            }
        }
    }

private:
    [[nodiscard]] QRect checkRect(const QRect &item) const
    {
        const QRect check(item.left() + kCheckLeft, item.top() + (item.height() - kCheckSide) / 2,
                          kCheckSide, kCheckSide);
        return QStyle::visualRect(layoutDirection(), item, check);
    }

    static void drawCheckMark(QPainter &painter, const QRectF &box)
    {
        const auto at = [&](double x, double y) {
            return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
        };
        painter.drawPolyline(QPolygonF{at(0.15, 0.55), at(0.4, 0.8), at(0.87, 0.25)});
    }
};

/// Where the parts of the button's face are.
struct Face
{
    QRect icon;
    QRect label;
    QRect path;
    QRect chevron;
};

Face faceOf(const QRect &button, bool hasPath, Qt::LayoutDirection direction)
{
    const auto placed = [&](int left, int width, int height) {
        return QRect(left, button.top() + (button.height() - height) / 2, width, height);
    };
    Face face;
    face.icon = placed(button.left() + kPadding, kIconSide, kIconSide);
    face.chevron = placed(button.right() + 1 - kPadding - kChevronSide, kChevronSide, kChevronSide);
    const int textLeft = face.icon.right() + 1 + kTextGap;
    const int textWidth = face.chevron.left() - kChevronGap - textLeft;
    const QRect texts = placed(textLeft, textWidth, kLabelHeight + (hasPath ? kPathHeight : 0));
    face.label = QRect(texts.topLeft(), QSize(textWidth, kLabelHeight));
    face.path = QRect(face.label.bottomLeft() + QPoint(0, 1), QSize(textWidth, kPathHeight));
    for (QRect *part : {&face.icon, &face.chevron, &face.label, &face.path}) {
        *part = QStyle::visualRect(direction, button, *part);
    }
    return face;
}

QString normalized(const QString &folder)
{
    return folder.trimmed().isEmpty() ? QString()
                                      : QDir::cleanPath(QDir::fromNativeSeparators(folder));
}

QString standardFolder(QStandardPaths::StandardLocation location)
{
    return normalized(QStandardPaths::writableLocation(location));
}

bool isSameFolder(const QString &left, const QString &right)
{
    const QString first = normalized(left);
    const QString second = normalized(right);
    return !first.isEmpty() && !second.isEmpty() && first.compare(second, Qt::CaseInsensitive) == 0;
}

QFont sizedFont(QFont font, int pixelSize, QFont::Weight weight)
{
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace

FileLocationSelector::FileLocationSelector(QWidget *parent)
    : QAbstractButton(parent)
{
    setObjectName(QStringLiteral("fileLocationSelector"));
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setFixedHeight(kHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("文件保存位置"));
    connect(this, &QAbstractButton::clicked, this, &FileLocationSelector::openMenu);
    refreshTexts();
}

FileLocationSelector::~FileLocationSelector() = default;

QString FileLocationSelector::directory() const
{
    switch (m_mode) {
    case LocationMode::SourceFolder:
        return m_sourceFolder;
    case LocationMode::Desktop:
        return standardFolder(QStandardPaths::DesktopLocation);
    case LocationMode::Documents:
        return standardFolder(QStandardPaths::DocumentsLocation);
    case LocationMode::Custom:
        return m_customFolder;
    }
    return {};
}

QSize FileLocationSelector::sizeHint() const
{
    return {kPreferredWidth, kHeight};
}

QSize FileLocationSelector::minimumSizeHint() const
{
    return {kMinimumWidth, kHeight};
}

void FileLocationSelector::setSourceFolder(const QString &folder)
{
    const QString newFolder = normalized(folder);
    if (newFolder == m_sourceFolder) {
        return;
    }
    m_sourceFolder = newFolder;
    refreshTexts();
}

void FileLocationSelector::setDirectory(const QString &folder)
{
    const QString newFolder = normalized(folder);
    m_customFolder.clear();
    if (newFolder.isEmpty() || isSameFolder(newFolder, m_sourceFolder)) {
        m_mode = LocationMode::SourceFolder;
    } else if (isSameFolder(newFolder, standardFolder(QStandardPaths::DesktopLocation))) {
        m_mode = LocationMode::Desktop;
    } else if (isSameFolder(newFolder, standardFolder(QStandardPaths::DocumentsLocation))) {
        m_mode = LocationMode::Documents;
    } else {
        m_mode = LocationMode::Custom;
        m_customFolder = newFolder;
    }
    refreshTexts();
}

void FileLocationSelector::setMode(LocationMode mode, const QString &customFolder)
{
    const QString oldDirectory = directory();
    const LocationMode oldMode = m_mode;
    m_mode = mode;
    if (m_mode == LocationMode::Custom) {
        m_customFolder = normalized(customFolder);
        if (m_customFolder.isEmpty()) {
            m_mode = oldMode;
        }
    }
    refreshTexts();

    const QString newDirectory = directory();
    if (m_mode != oldMode || newDirectory != oldDirectory) {
        emit directoryChanged(newDirectory);
    }
}

void FileLocationSelector::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
        // Any of these opens the menu of a drop-down button, besides the space bar.
        if (!event->isAutoRepeat()) {
            click();
        }
        break;
    default:
        QAbstractButton::keyPressEvent(event);
        break;
    }
}

void FileLocationSelector::paintEvent(QPaintEvent * /*event*/)
{
    const bool hovered = isEnabled() && underMouse();
    const QString folder = QDir::toNativeSeparators(directory());
    const Face face = faceOf(rect(), !folder.isEmpty(), layoutDirection());

    QColor background = Theme::white;
    QColor border = Theme::border;
    if (isDown()) {
        background = Theme::pressed;
        border = Theme::borderStrong;
    } else if (hovered) {
        background = Theme::hover;
        border = Theme::borderStrong;
    }
    if (hasFocus()) {
        border = Theme::accent;
    }
    const double lineWidth = hasFocus() ? 2.0 : 1.0;
    const double inset = lineWidth / 2;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(border, lineWidth));
    painter.setBrush(background);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius,
                            kRadius);

    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    QIcon(kFolderIcon).paint(&painter, face.icon);
    QIcon(kChevronIcon).paint(&painter, face.chevron);
    painter.setOpacity(1.0);

    const int flags =
        static_cast<int>(leadingSide(layoutDirection()) | Qt::AlignVCenter) | Qt::TextSingleLine;
    painter.setFont(sizedFont(font(), kLabelPixelSize, QFont::DemiBold));
    painter.setPen(isEnabled() ? Theme::ink : Theme::textMuted);
    painter.drawText(face.label, flags,
                     painter.fontMetrics().elidedText(label(), Qt::ElideRight, face.label.width()));
    painter.setFont(sizedFont(font(), kPathPixelSize, QFont::Normal));
    painter.setPen(isEnabled() ? Theme::textSecondary : Theme::textMuted);
    // A path runs from left to right in every language.
    painter.drawText(face.path, flags | Qt::TextForceLeftToRight,
                     painter.fontMetrics().elidedText(folder, Qt::ElideMiddle, face.path.width()));
}

void FileLocationSelector::openMenu()
{
    struct Entry
    {
        QString text;
        LocationMode mode;
    };
    const std::array entries{Entry{tr("原始文件夹"), LocationMode::SourceFolder},
                             Entry{tr("桌面"), LocationMode::Desktop},
                             Entry{tr("文档"), LocationMode::Documents}};
    const QIcon icon(kFolderIcon);

    // The menu belongs to the selector, which may be deleted while it is open.
    const QPointer<FileLocationSelector> self(this);
    const QPointer<QMenu> menu(new LocationMenu(this));
    endHoverWithPopup(*menu, *this);
    for (const Entry &entry : entries) {
        QAction *action = menu->addAction(icon, entry.text);
        action->setCheckable(true);
        action->setChecked(m_mode == entry.mode);
        action->setData(static_cast<int>(entry.mode));
    }
    menu->addSeparator();
    const QAction *other = menu->addAction(icon, tr("选择其他文件夹…"));

    const QAction *chosen = menu->exec(mapToGlobal(QPoint(0, height() + kMenuGap)));
    if (self == nullptr) {
        return;
    }
    const bool isOther = chosen == other;
    const QVariant mode = chosen != nullptr ? chosen->data() : QVariant();
    delete menu;
    if (mode.isValid()) {
        setMode(static_cast<LocationMode>(mode.toInt()));
    } else if (isOther) {
        chooseCustomFolder();
    }
}

void FileLocationSelector::chooseCustomFolder()
{
    const QPointer<FileLocationSelector> self(this);
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("选择文件保存位置"), directory(), QFileDialog::ShowDirsOnly);
    if (self != nullptr && !folder.isEmpty()) {
        setMode(LocationMode::Custom, folder);
    }
}

QString FileLocationSelector::label() const
{
    switch (m_mode) {
    case LocationMode::SourceFolder:
        return tr("原始文件夹");
    case LocationMode::Desktop:
        return tr("桌面");
    case LocationMode::Documents:
        return tr("文档");
    case LocationMode::Custom:
        return tr("自定义文件夹");
    }
    return {};
}

void FileLocationSelector::refreshTexts()
{
    const QString folder = QDir::toNativeSeparators(directory());
    setToolTip(plainToolTip(folder));
    setAccessibleDescription(label() + QStringLiteral(": ") + folder);
    update();
}
