#pragma once

#include "app/app_context.h"

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace velmora
{

class Switch;

/// The work area while the licence agreement is edited: a switch, its text, ways to fill and empty it.
class LicenseEditor : public QWidget
{
    Q_OBJECT

public:
    explicit LicenseEditor(const AppContext& context, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void showCount(const QString& text);
    void showInk();
    void storeText();

    AppContext m_context;
    Switch* m_include;
    QPlainTextEdit* m_text;
    QPushButton* m_clear = nullptr;
    QLabel* m_hint;
    QLabel* m_count;
    bool m_refreshing = false;
};

} // namespace velmora
