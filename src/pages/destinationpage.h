#pragma once

#include "pages/wizardpage.h"

class QLabel;

/// Shows and changes the folder to install into. It does not validate the folder; the caption tells
/// how much space is free.
class DestinationPage : public WizardPage
{
    Q_OBJECT

public:
    explicit DestinationPage(QWidget *parent = nullptr);

    /// Destination folder, with native separators.
    [[nodiscard]] QString path() const { return m_path; }
    void setPath(const QString &path);

    void prepare(SetupChoices &choices) override;
    void leave(SetupChoices &choices) override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void chooseFolder();
    void refreshDiskSpace();

    QString m_path;
    QLabel *m_pathLabel;
    QLabel *m_diskSpace;
};
