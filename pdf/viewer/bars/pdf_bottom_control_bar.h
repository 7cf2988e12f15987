// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class PageNumberValidator;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// The dark bar that floats over the page area: turning pages, the page number, the zoom and how
/// the page is fitted.
///
/// The bar only asks; the viewer places it, carries the requests out and tells the bar of its
/// state. A new bar is hidden until it is placed. Page indexes are 0-based, page numbers in the
/// interface 1-based. Setting a state emits nothing.
class PdfBottomControlBar final : public QWidget
{
    Q_OBJECT

public:
    explicit PdfBottomControlBar(QWidget *parent = nullptr);
    ~PdfBottomControlBar() override;

    /// Takes a negative count as none.
    void setPageCount(int count);
    /// Shows the page at `index`, or the nearest one there is.
    void setCurrentPage(int index);
    /// Shows a zoom factor (1.0 is 100 %) as a percentage, within the limits of the zoom.
    void setZoom(double factor);
    /// Shows how the page is fitted: to the width, or whole.
    void setFitWidth(bool fitWidth);

signals:
    void previousPageRequested();
    void nextPageRequested();
    void pageRequested(int page);
    void zoomRequested(double factor);
    void fitWidthRequested();
    void fitPageRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QPushButton *createButton(const QString &objectName, const QString &toolTip);
    [[nodiscard]] QWidget *createPageNavigation();
    [[nodiscard]] QWidget *createSeparator();
    void createZoomCombo();
    void connectControls();
    void requestZoomAt(int item);
    void commitPageNumber();
    void toggleFit();
    void showCurrentPage();
    void updateArrows();

    QPushButton *m_previousButton = nullptr;
    QPushButton *m_nextButton = nullptr;
    QLineEdit *m_pageNumberEdit = nullptr;
    QLabel *m_pageCountLabel = nullptr;
    PageNumberValidator *m_validator = nullptr;
    QComboBox *m_zoomCombo = nullptr;
    QPushButton *m_fitToggleButton = nullptr;
    int m_pageCount = 0;
    int m_currentPage = -1;
    bool m_fitWidth = true;
};
