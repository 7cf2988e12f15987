// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/pdf_decry_options_panel.h"

#include "tools/options/password_field.h"
#include "tools/options/save_option.h"

PdfDecryOptionsPanel::PdfDecryOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("解锁PDF"), tr("解锁"), OutputLocation::Source::Offered, parent)
    , m_password(new PasswordField(this))
    , m_save(new SaveOption(this))
{
    m_password->setObjectName(QStringLiteral("firstPassword"));
    addHeading(tr("密码"));
    addControl(m_password);
    addHeading(tr("保存选项"));
    addControl(m_save);
    connect(m_password, &PasswordField::textChanged, this,
            &PdfDecryOptionsPanel::onPasswordChanged);
}

TaskRequest PdfDecryOptionsPanel::buildRequest() const
{
    TaskRequest request = ToolOptionsPanel::buildRequest();
    request.options.insert(QStringLiteral("password"), m_password->text());
    request.options.insert(QStringLiteral("saveOption"), m_save->value());
    return request;
}

void PdfDecryOptionsPanel::onPasswordChanged()
{
    const bool isMissing = m_password->text().isEmpty();
    if (isMissing) {
        m_password->showMessage(tr("此项目为必填项"));
    } else {
        m_password->setMessageVisible(false);
    }
    m_password->setError(isMissing);
}
