// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QIntValidator>

/// Checks a page number while it is typed.
///
/// Any number may be typed, also one that no page has; the nearest page takes its place when the
/// input is finished, and the current page that of an empty input. Digits of every script and
/// full-width digits become ASCII digits.
class PageNumberValidator final : public QIntValidator
{
    Q_OBJECT

public:
    explicit PageNumberValidator(QObject *parent = nullptr);
    ~PageNumberValidator() override;

    /// The page number that stands for an empty input.
    void setCurrentNumber(int number) { m_currentNumber = number; }

    [[nodiscard]] State validate(QString &input, int &position) const override;
    void fixup(QString &input) const override;

private:
    int m_currentNumber = 1;
};
