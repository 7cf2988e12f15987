// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPushButton>

/// A button of the viewer's tool bar, which can do without its text where room is scarce.
///
/// text() stays what it is; only the button's face and its size hint leave it out. A layout may
/// always shrink the button to its icon.
class ToolBarButton final : public QPushButton
{
    Q_OBJECT

public:
    explicit ToolBarButton(QWidget *parent = nullptr);
    ~ToolBarButton() override;

    [[nodiscard]] bool isTextShown() const { return m_textShown; }
    void setTextShown(bool shown);
    /// What the text adds to the width of the button, in logical pixels.
    [[nodiscard]] int textWidth() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton *option) const override;

private:
    [[nodiscard]] QSize fullSize() const;
    [[nodiscard]] QSize iconOnlySize() const;

    bool m_textShown = true;
};
