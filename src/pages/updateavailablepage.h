#pragma once

#include <QWidget>

class QLabel;

/// Offers the version that this wizard carries, beside the installed one.
class UpdateAvailablePage : public QWidget
{
    Q_OBJECT

public:
    explicit UpdateAvailablePage(QWidget *parent = nullptr);

    /// An empty `installed` reads "not found".
    void setVersions(const QString &installed, const QString &available);

private:
    QLabel *m_installed;
    QLabel *m_available;
};
