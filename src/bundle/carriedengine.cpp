#include "bundle/carriedengine.h"

#include "bundle/unpack.h"

#include <QThread>

#include <chrono>

using namespace std::chrono_literals;

namespace {

/// Between two pieces, until hurry() is called. Windows makes about 15 ms of it.
constexpr auto kPause = 1ms;

} // namespace

CarriedEngine::CarriedEngine(const QString &program, const Bundle &bundle, QObject *parent)
    : QObject(parent), m_program(program), m_bundle(bundle)
{}

CarriedEngine::~CarriedEngine()
{
    remove();
}

void CarriedEngine::remove()
{
    if (m_thread) {
        m_thread->requestInterruption();
        m_thread->wait();
    }
    m_file.release();
    m_folder.remove();
}

void CarriedEngine::start()
{
    if (m_thread)
        return;
    m_thread.reset(QThread::create([this] { unpack(); }));
    connect(m_thread.get(), &QThread::finished, this, &CarriedEngine::onUnpacked);
    m_thread->start();
}

QString CarriedEngine::path() const
{
    return m_folder.filePath(kUnpackedEngine.toString());
}

void CarriedEngine::unpack()
{
    if (!m_folder.create()) {
        m_error = unpackFailure(m_folder.errorString(), m_bundle.size);
        return;
    }
    m_folder.removeAbandoned();
    m_error = unpackEngine(m_program, m_bundle, path(), m_file, [this] {
        if (!m_isHurried)
            QThread::msleep(kPause.count());
        return !QThread::currentThread()->isInterruptionRequested();
    });
}

void CarriedEngine::onUnpacked()
{
    m_isFinished = true;
    Q_EMIT finished();
}
