#pragma once

#include <QObject>

namespace velmora
{

/// Whether labels underline the letter that leads to their control: while Alt is held, so that panels stay quiet.
class MnemonicHints : public QObject
{
    Q_OBJECT

public:
    MnemonicHints();

    [[nodiscard]] bool shown() const { return m_shown; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool m_shown = false;
};

} // namespace velmora
