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
    /// Pops the badge in.
    void start();

private:
    GifBadge *m_badge;
    QLabel *m_body;
};
