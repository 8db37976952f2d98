#pragma once

#include "pages/wizardpage.h"

class QLabel;

/// The only page of a set-up file that is older than the installed copy, which its engine would
/// refuse to replace.
class NewerInstalledPage : public WizardPage
{
    Q_OBJECT

public:
    explicit NewerInstalledPage(QWidget *parent = nullptr);

    void prepare(SetupChoices &choices) override;

private:
    QLabel *m_body = nullptr;
};
