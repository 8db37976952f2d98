#pragma once

#include "pages/wizardpage.h"

class QLabel;
class SealCheck;

/// Last page of a successful installation.
class FinishedPage : public WizardPage
{
    Q_OBJECT

public:
    explicit FinishedPage(QWidget *parent = nullptr);

    /// Says where the product went and whether there is a shortcut.
    void setResult(const QString &path, bool desktopShortcut);

    void prepare(SetupChoices &choices) override;
    [[nodiscard]] SealCheck *seal() const override { return m_seal; }

private:
    SealCheck *m_seal;
    QLabel *m_body;
};
