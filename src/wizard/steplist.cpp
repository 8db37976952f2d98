#include "wizard/steplist.h"

#include "wizard/steprow.h"

#include <QVBoxLayout>

#include <utility>

StepList::StepList(QWidget *parent) : QWidget(parent), m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins({});
    m_layout->setSpacing(0);
}

void StepList::setSteps(const QStringList &steps)
{
    qDeleteAll(m_rows);
    m_rows.clear();
    for (const QString &step : steps) {
        auto *row = new StepRow(step, this);
        m_layout->addWidget(row);
        m_rows.append(row);
    }
}

void StepList::setProgress(double fraction)
{
    for (qsizetype i = 0; i < m_rows.size(); ++i)
        m_rows[i]->setRevealed(fraction >= double(i) / double(m_rows.size()));
}

void StepList::reset()
{
    for (StepRow *row : std::as_const(m_rows))
        row->resetReveal();
}

void StepList::complete()
{
    setProgress(1.0);
}

QString StepList::currentStep() const
{
    QString step;
    for (const StepRow *row : m_rows) {
        if (row->isRevealed())
            step = row->text();
    }
    return step;
}
