#pragma once

#include "pages/wizardpage.h"

class QLabel;
class SealCheck;

/// Last page of a successful update.
class UpdateFinishedPage : public WizardPage
{
    Q_OBJECT

public:
    explicit UpdateFinishedPage(QWidget *parent = nullptr);

    void setVersion(const QString &version);

    void prepare(SetupChoices &choices) override;
    [[nodiscard]] SealCheck *seal() const override { return m_seal; }

private:
    SealCheck *m_seal;
    QLabel *m_body;
};
