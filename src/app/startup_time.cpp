#include "app/startup_time.h"

#include "platform/process_age.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace velmora
{
namespace
{

/// Waits for a window's first paint and is gone after it.
class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QWidget& window) : QObject(&window) { window.installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !m_seen) {
            m_seen = true;
            // The children follow in the same round, and then the picture goes to the screen.
            QTimer::singleShot(0, this, [this] {
                if (const auto age = processAge())
                    std::fprintf(stderr, "First paint after %lld ms\n", static_cast<long long>(age->count()));
                deleteLater();
            });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    bool m_seen = false;
};

} // namespace

void reportFirstPaint(QWidget& window)
{
    if (qEnvironmentVariableIsSet("VELMORA_STARTUP_TIME"))
        new FirstPaint(window);
}

} // namespace velmora
