#pragma once

#include "pages/wizardpage.h"

class GifBadge;
class QLabel;

/// The farewell after a removal.
class UninstallCompletePage : public WizardPage
{
    Q_OBJECT

public:
    explicit UninstallCompletePage(QWidget *parent = nullptr);

    void setPreferencesRemoved(bool removed);

    void prepare(SetupChoices &choices) override;
    /// Pops the badge in.
    void start() override;

private:
    GifBadge *m_badge;
    QLabel *m_body;
};
