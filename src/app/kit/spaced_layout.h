#pragma once

#include <QPlainTextDocumentLayout>
#include <QTextBlock>
#include <QTextLayout>

namespace velmora
{

/// Plain text with room between its lines, which Qt's layout does not offer by itself.
class SpacedLayout : public QPlainTextDocumentLayout
{
public:
    /// `extra` device-independent pixels below each line.
    SpacedLayout(QTextDocument* document, double extra) : QPlainTextDocumentLayout(document), m_extra(extra) {}

    [[nodiscard]] QRectF blockBoundingRect(const QTextBlock& block) const override
    {
        QRectF rect = QPlainTextDocumentLayout::blockBoundingRect(block);
        if (!block.isValid() || !block.isVisible())
            return rect;
        const QTextLayout* layout = block.layout();
        const double below = rect.height() - layout->boundingRect().bottom(); // the margin of the last block
        double y = 0;
        for (int i = 0; i < layout->lineCount(); ++i) {
            QTextLine line = layout->lineAt(i);
            line.setPosition({line.x(), y});
            y += line.height() + m_extra;
        }
        rect.setHeight(y + below);
        return rect;
    }

private:
    double m_extra;
};

} // namespace velmora
