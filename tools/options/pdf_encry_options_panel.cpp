// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/pdf_encry_options_panel.h"

#include "tools/options/password_field.h"
#include "tools/options/save_option.h"

PdfEncryOptionsPanel::PdfEncryOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("加密PDF"), tr("添加密码"), OutputLocation::Source::Offered, parent)
    , m_first(new PasswordField(this))
    , m_second(new PasswordField(this))
    , m_save(new SaveOption(this))
{
    m_first->setObjectName(QStringLiteral("firstPassword"));
    m_second->setObjectName(QStringLiteral("secondPassword"));
    addHeading(tr("密码"));
    addControl(m_first);
    addHeading(tr("重新输入密码"));
    addControl(m_second);
    addHeading(tr("保存选项"));
    addControl(m_save);
    // What a field says when the other one is emptied before anything was wrong.
    for (PasswordField *field : {m_first, m_second}) {
        field->showMessage(tr("两个密码应该匹配"));
        field->setMessageVisible(false);
    }
    connect(m_first, &PasswordField::textChanged, this, &PdfEncryOptionsPanel::onFirstChanged);
    connect(m_second, &PasswordField::textChanged, this, &PdfEncryOptionsPanel::onSecondChanged);
}

TaskRequest PdfEncryOptionsPanel::buildRequest() const
{
    TaskRequest request = ToolOptionsPanel::buildRequest();
    request.options.insert(QStringLiteral("password"), m_first->text());
    request.options.insert(QStringLiteral("saveOption"), m_save->value());
    return request;
}

bool PdfEncryOptionsPanel::passwordsMatch() const
{
    return m_first->text() == m_second->text();
}

void PdfEncryOptionsPanel::onFirstChanged()
{
    if (!m_first->text().isEmpty()) {
        m_first->setMessageVisible(false);
        m_first->setError(false);
        return;
    }
    m_first->showMessage(tr("此项目为必填项"));
    m_first->setError(true);
    m_second->setMessageVisible(!m_second->text().isEmpty());
}

void PdfEncryOptionsPanel::onSecondChanged()
{
    if (m_second->text().isEmpty()) {
        m_second->showMessage(tr("此项目为必填项"));
        m_second->setError(true);
        m_first->setMessageVisible(!m_first->text().isEmpty());
        return;
    }
    const bool match = passwordsMatch();
    for (PasswordField *field : {m_first, m_second}) {
        if (match) {
            field->setMessageVisible(false);
        } else {
            field->showMessage(tr("两个密码应该匹配"));
        }
        field->setError(!match);
    }
}
