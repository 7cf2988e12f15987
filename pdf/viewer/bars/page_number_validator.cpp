// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/page_number_validator.h"

#include <algorithm>

namespace {

/// As many digits as any 32-bit number can take.
constexpr int kMostDigits = 9;

} // namespace

PageNumberValidator::PageNumberValidator(QObject *parent)
    : QIntValidator(parent)
{}

PageNumberValidator::~PageNumberValidator() = default;

QValidator::State PageNumberValidator::validate(QString &input, int & /*position*/) const
{
    for (QChar &character : input) {
        if (!character.isDigit()) {
            return Invalid;
        }
        character = QChar(u'0' + character.digitValue());
    }
    if (input.size() > kMostDigits) {
        return Invalid;
    }
    const int number = input.toInt();
    return !input.isEmpty() && number >= bottom() && number <= top() ? Acceptable : Intermediate;
}

void PageNumberValidator::fixup(QString &input) const
{
    const int number = input.isEmpty() ? m_currentNumber : input.toInt();
    input = QString::number(std::clamp(number, bottom(), top()));
}
