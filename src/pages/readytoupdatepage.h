#pragma once

#include "pages/wizardpage.h"

class QLabel;
class SummaryBox;

/// Shows what an update is about to do, before it does.
class ReadyToUpdatePage : public WizardPage
{
    Q_OBJECT

public:
    explicit ReadyToUpdatePage(QWidget *parent = nullptr);

    /// An empty `folder` keeps the one shown before.
    void setDetails(const QString &version, const QString &folder);

    void prepare(SetupChoices &choices) override;

private:
    void rebuild();

    QString m_version;
    QString m_folder;
    QLabel *m_body;
    SummaryBox *m_summary;
};
