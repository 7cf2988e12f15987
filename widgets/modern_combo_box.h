// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QPersistentModelIndex>
#include <QPushButton>

class ComboPopup;
class QListWidgetItem;

/// A drop-down box whose items stand in a pop-up of its own.
///
/// One item may be the custom one, which stands for a folder: an item whose role kLocationRole is
/// kCustomLocation asks for a folder when it is chosen. The folder is kept in the item's kTextRole,
/// as the file dialog names it; the box shows it in place of the item's text.
class ModernComboBox final : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY currentIndexChanged)
    Q_PROPERTY(int count READ count)

public:
    /// Roles of the items besides Qt's own.
    static constexpr int kIconRole = Qt::UserRole;
    /// The text that the item was added with, or the chosen folder.
    static constexpr int kTextRole = Qt::UserRole + 1;
    static constexpr int kLocationRole = Qt::UserRole + 4;
    /// The value of kLocationRole for a folder of the user's choice.
    static constexpr int kCustomLocation = 3;

    explicit ModernComboBox(QWidget *parent = nullptr, bool opensUpwards = false);
    ~ModernComboBox() override;

    [[nodiscard]] int count() const;
    /// Null where there is none.
    [[nodiscard]] QListWidgetItem *item(int index) const;
    [[nodiscard]] QListWidgetItem *currentItem() const;
    /// -1 while there is no item.
    [[nodiscard]] int currentIndex() const;
    [[nodiscard]] ComboPopup *popup() const { return m_popup; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Appends an item and makes it the current one, in silence. The box owns the item.
    QListWidgetItem *addItem(const QString &text, const QIcon &icon = {}, bool custom = false);
    /// Makes an item of this box the current one, in silence.
    void setCurrentItem(QListWidgetItem *item);

public slots:
    /// Chooses an item as if it had been clicked. A custom location asks for a folder first; when
    /// the user chooses none, the item is chosen all the same.
    void onItemClicked(QListWidgetItem *item);

signals:
    /// The user chose an item, maybe the one that was chosen before.
    void currentIndexChanged(int index);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void togglePopup();
    /// Where the pop-up goes, and whether it is above the box.
    [[nodiscard]] QRect popupGeometry(bool *above) const;
    void chooseFolder(const QPersistentModelIndex &index);
    void refreshTexts();
    /// The folder of the current item if the user has chosen one, else empty.
    [[nodiscard]] QString chosenFolder() const;
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] bool isElided() const;
    [[nodiscard]] int contentWidth(const QString &text, const QIcon &icon) const;

    ComboPopup *m_popup;
    bool m_opensUpwards;
    QPersistentModelIndex m_current;
    QPersistentModelIndex m_custom;
};
