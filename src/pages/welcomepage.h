#pragma once

#include <QWidget>

/// First page of an installation: what will be installed, and by whom.
class WelcomePage : public QWidget
{
    Q_OBJECT

public:
    explicit WelcomePage(QWidget *parent = nullptr);
};
